/// \file
/// Configuration files that people write.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <keltoolkitexport.h>

/// A configuration file, read once: lines `name = value`, with dotted names, `[section]` lines that
/// put their name in front of those that follow, and `#` comments. Text is UTF-8.
///
/// Lines that are nothing of this kind are passed over, so any input gives a result.
class KEL_TOOLKIT_EXPORT QPIConfig
{
public:
    /// One `name = value` line.
    class KEL_TOOLKIT_EXPORT Leaf
    {
    public:
        Leaf() = default;
        Leaf(const QString &fullName, const QString &value);

        QString name() const;                                  ///< Last part of the name.
        const QString &fullName() const { return m_fullName; } ///< All parts, sections first, joined by ".".
        const QString &value() const { return m_value; }       ///< Without the space around it.

    private:
        QString m_fullName;
        QString m_value;
    };

    /// No entries.
    QPIConfig() = default;

    /// Reads the file at \a path. A path that is no file or cannot be read, and a file larger than
    /// 64 MiB, have no entries.
    explicit QPIConfig(const QString &path);

    /// Reads the \a text of a file.
    static QPIConfig fromText(const QByteArray &text);

    /// Whether the file could be read.
    bool isOpened() const { return m_opened; }

    /// All entries in the order of the file; a name that stands there twice is there twice.
    QList<Leaf> allLeaves() const { return m_leaves; }

private:
    void parse(const QByteArray &text);

    QList<Leaf> m_leaves;
    bool m_opened = false;
};
