#include "memberprose.h"

namespace
{

QString keyOf(const QString &className, const QString &member)
{
    return className + QLatin1Char('.') + member;
}

} // namespace

MemberProse::MemberProse(const QString &text, const QString &name)
    : m_name(name)
{
    QString className;
    QString key;
    int number = 0;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        ++number;
        const QString words = line.simplified();
        const int colon = line.indexOf(QLatin1String(": "));
        if (words.isEmpty())
            continue;
        if (line.startsWith(QLatin1String("= "))) {
            className = words.mid(2);
            key.clear();
        } else if (line.startsWith(QLatin1Char(' ')) && !key.isEmpty()) {
            m_texts[key] += QLatin1Char(' ') + words;
        } else if (colon > 0 && !className.isEmpty() && !m_texts.contains(keyOf(className, line.left(colon)))) {
            key = keyOf(className, line.left(colon));
            m_texts[key] = line.mid(colon + 2).simplified();
        } else {
            throw ProseError(QStringLiteral("%1:%2: no new text of a member").arg(name).arg(number).toStdString());
        }
    }
}

QString MemberProse::find(const QString &className, const QString &member)
{
    m_asked << keyOf(className, member);
    return m_texts.value(keyOf(className, member));
}

QString MemberProse::get(const QString &className, const QString &member)
{
    const QString text = find(className, member);
    if (text.isEmpty())
        throw ProseError(QStringLiteral("%1: no text about %2").arg(m_name, keyOf(className, member)).toStdString());
    return text;
}

QStringList MemberProse::unused() const
{
    QStringList names;
    for (auto text = m_texts.keyBegin(); text != m_texts.keyEnd(); ++text) {
        if (!m_asked.contains(*text))
            names << *text;
    }
    return names;
}
