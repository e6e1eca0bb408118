#include "panel/panelform.h"

#include "panel/formlimits.h"

#include <QSet>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace
{

/// Copies a form element by element, keeps the connections back and stops at the first thing that the
/// form loader must not see.
class FormReader
{
public:
    FormReader(const QByteArray &text, const QString &fileName, const QStringList &knownClasses)
        : m_xml(text)
        , m_writer(&m_form.text)
        , m_fileName(fileName)
        , m_knownClasses(knownClasses.cbegin(), knownClasses.cend())
    {
    }

    PanelForm read();

private:
    void readToken();
    void checkElement();
    void checkClass(const QString &kind, const QSet<QString> &known);
    QString elementName() const;
    void readConnections();
    void readConnection();
    void fail(const QString &what);

    QXmlStreamReader m_xml;
    PanelForm m_form;
    QXmlStreamWriter m_writer;
    QString m_fileName;
    QSet<QString> m_knownClasses;
    const QSet<QString> m_knownLayouts{QStringLiteral("QFormLayout"), QStringLiteral("QGridLayout"),
                                       QStringLiteral("QHBoxLayout"), QStringLiteral("QStackedLayout"),
                                       QStringLiteral("QVBoxLayout")};
    FormLimits m_limits;
    int m_depth = 0;
};

PanelForm FormReader::read()
{
    while (!m_xml.atEnd() && m_form.error.isEmpty()) {
        m_xml.readNext();
        readToken();
    }
    if (m_form.error.isEmpty() && m_xml.hasError())
        fail(m_xml.errorString().simplified());
    if (m_form.error.isEmpty() && m_limits.widgets() == 0)
        fail(QStringLiteral("there is no widget in it"));
    if (!m_form.error.isEmpty())
        m_form.text.clear();
    return m_form;
}

void FormReader::readToken()
{
    if (m_xml.hasError())
        return;
    if (m_xml.isDTD())
        return fail(QStringLiteral("a form has no document type"));
    if (m_xml.isStartElement()) {
        if (++m_depth == 2 && elementName() == QLatin1String("connections")) {
            readConnections();
            --m_depth;
            return;
        }
        checkElement();
    } else if (m_xml.isEndElement()) {
        --m_depth;
        fail(m_limits.leave());
    } else if (m_xml.isCharacters()) {
        m_limits.read(m_xml.text());
    }
    m_writer.writeCurrentToken(m_xml);
}

/// In small letters, as the form loader does not tell them from capitals.
QString FormReader::elementName() const
{
    return m_xml.name().toString().toLower();
}

void FormReader::checkElement()
{
    const QString name = elementName();
    fail(m_limits.enter(name, m_xml.attributes()));
    if (m_depth == 1 && name != QLatin1String("ui"))
        fail(QStringLiteral("not a form: it begins with <%1>").arg(m_xml.name().toString().simplified().left(40)));
    if (name == QLatin1String("widget"))
        checkClass(QStringLiteral("widget class"), m_knownClasses);
    else if (name == QLatin1String("layout"))
        checkClass(QStringLiteral("layout"), m_knownLayouts);
}

void FormReader::checkClass(const QString &kind, const QSet<QString> &known)
{
    const QString name = m_xml.attributes().value(QLatin1String("class")).toString();
    if (!known.contains(name))
        fail(QStringLiteral("unknown %1 \"%2\"").arg(kind, name.simplified().left(60)));
}

void FormReader::readConnections()
{
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("connection"))
            readConnection();
        else
            m_xml.skipCurrentElement();
    }
}

void FormReader::readConnection()
{
    FormConnection connection;
    connection.line = int(m_xml.lineNumber());
    while (m_xml.readNextStartElement()) {
        const QString name = m_xml.name().toString();
        QString *field = name == QLatin1String("sender")     ? &connection.sender
                         : name == QLatin1String("signal")   ? &connection.signal
                         : name == QLatin1String("receiver") ? &connection.receiver
                         : name == QLatin1String("slot")     ? &connection.slot
                                                             : nullptr;
        if (field)
            *field = m_xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        else
            m_xml.skipCurrentElement();
    }
    m_form.connections.append(connection);
}

/// Ends the reading with  what, unless that is empty or something else was said already.
void FormReader::fail(const QString &what)
{
    if (what.isEmpty() || !m_form.error.isEmpty())
        return;
    m_form.error = QStringLiteral("%1:%2: %3").arg(m_fileName, QString::number(m_xml.lineNumber()), what);
}

} // namespace

PanelForm PanelForm::fromText(const QByteArray &text, const QString &fileName, const QStringList &knownClasses)
{
    if (text.size() > MaxSize) {
        PanelForm form;
        form.error =
            QStringLiteral("%1: larger than %2 MiB, so hardly a form").arg(fileName).arg(MaxSize / 1024 / 1024);
        return form;
    }
    return FormReader(text, fileName, knownClasses).read();
}
