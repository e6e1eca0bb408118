/// \file
/// What people wrote about the members of the widgets.
#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <stdexcept>

/// A text that is missing, that belongs to nothing, or that cannot be read; its line says which.
class ProseError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The texts of a file of this form:
///
///     = KelButton
///     about: What the widget is for.
///         A line that is indented goes on with the text above it.
///     clickID: What the property is.
///
/// It remembers which texts were asked for, so that one that belongs to nothing any more can be named.
class MemberProse
{
public:
    /// Reads \a text; \a name stands for it in errors. Throws a ProseError.
    MemberProse(const QString &text, const QString &name);

    /// The text of \a member of the class \a className, in one line; empty when there is none.
    QString find(const QString &className, const QString &member);

    /// The same, but throws a ProseError when there is none.
    QString get(const QString &className, const QString &member);

    /// Names as "Class.member" of the texts that nobody asked for.
    QStringList unused() const;

private:
    QString m_name;
    QMap<QString, QString> m_texts; ///< By "Class.member".
    QSet<QString> m_asked;
};
