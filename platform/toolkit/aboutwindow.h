/// \file
/// What an application is made of, for people who report a fault.
#pragma once

#include <QDialog>
#include <QList>
#include <QPair>
#include <QString>
#include <keltoolkitexport.h>

class QBoxLayout;

/// A dialog with the application's name and two lists of lines: versions of its libraries and facts
/// about their build. Libraries add their lines before the dialog is made; it shows the lines of that
/// moment and can copy them as text. GUI thread only.
class KEL_TOOLKIT_EXPORT AboutWindow : public QDialog
{
    Q_OBJECT

public:
    using Lines = QList<QPair<QString, QString>>; ///< Label and text of each line.

    explicit AboutWindow(QWidget *parent = nullptr);

    /// Adds a line at the end of the versions; a line that is there already is there twice then.
    static void addVersion(const QString &label, const QString &text);

    /// Adds a line at the end of the build information, as addVersion does.
    static void addBuildInfo(const QString &label, const QString &text);

    static Lines versions();  ///< In the order in which they were added.
    static Lines buildInfo(); ///< In the order in which they were added.

    /// The lines that this dialog shows, as text for a fault report: `label: text`, a blank line
    /// between the two lists.
    QString plainText() const;

private Q_SLOTS:
    void copyToClipboard() const;

private:
    void addHeading(QBoxLayout *layout);
    void addLists(QBoxLayout *layout);
    void addButtons(QBoxLayout *layout);

    const Lines m_versions;
    const Lines m_buildInfo;
};
