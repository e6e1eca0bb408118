#include "qpiconfig.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace
{

constexpr qint64 LargestFile = 64 << 20;
constexpr QChar Dot = QLatin1Char('.');

/// \a line up to its comment: a "#" at its start or after white space.
QString withoutComment(const QString &line)
{
    int hash = line.indexOf(QLatin1Char('#'));
    while (hash > 0 && !line.at(hash - 1).isSpace())
        hash = line.indexOf(QLatin1Char('#'), hash + 1);
    return (hash < 0 ? line : line.left(hash)).trimmed();
}

/// \a name with no space around its parts and no empty part; empty when nothing is left.
QString normalized(const QString &name)
{
    QStringList parts;
    const QStringList given = name.split(Dot);
    for (const QString &part : given) {
        const QString trimmed = part.trimmed();
        if (!trimmed.isEmpty())
            parts << trimmed;
    }
    return parts.join(Dot);
}

} // namespace

QPIConfig::Leaf::Leaf(const QString &fullName, const QString &value)
    : m_fullName(fullName)
    , m_value(value)
{
}

QString QPIConfig::Leaf::name() const
{
    return m_fullName.mid(m_fullName.lastIndexOf(Dot) + 1);
}

QPIConfig::QPIConfig(const QString &path)
{
    // Only a plain file: opening a pipe could wait for ever, and a device may have no end.
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return;
    QFile file(path);
    if (file.size() > LargestFile || !file.open(QIODevice::ReadOnly))
        return;
    const QByteArray text = file.read(LargestFile);
    // Half a file may mean something else than the whole.
    m_opened = file.error() == QFileDevice::NoError;
    if (m_opened)
        parse(text);
}

QPIConfig QPIConfig::fromText(const QByteArray &text)
{
    QPIConfig config;
    config.m_opened = true;
    config.parse(text);
    return config;
}

void QPIConfig::parse(const QByteArray &text)
{
    QString section;
    const QStringList lines = QString::fromUtf8(text.constData(), text.size()).split(QLatin1Char('\n'));
    for (const QString &whole : lines) {
        const QString line = withoutComment(whole);
        if (line.startsWith(QLatin1Char('[')) && line.indexOf(QLatin1Char(']')) == line.size() - 1) {
            section = normalized(line.mid(1, line.size() - 2));
            continue;
        }
        const int equals = line.indexOf(QLatin1Char('='));
        const QString name = equals < 0 ? QString() : normalized(line.left(equals));
        if (!name.isEmpty())
            m_leaves.append({section.isEmpty() ? name : section + Dot + name, line.mid(equals + 1).trimmed()});
    }
}
