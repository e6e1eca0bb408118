#include "panelform.h"

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
    void checkClass();
    void checkCell();
    void readConnections();
    void readConnection();
    void fail(const QString &what);

    QXmlStreamReader m_xml;
    PanelForm m_form;
    QXmlStreamWriter m_writer;
    QString m_fileName;
    QSet<QString> m_knownClasses;
    int m_depth = 0;
    int m_widgets = 0;
};

PanelForm FormReader::read()
{
    while (!m_xml.atEnd() && m_form.error.isEmpty()) {
        m_xml.readNext();
        readToken();
    }
    if (m_form.error.isEmpty() && m_xml.hasError())
        fail(m_xml.errorString().simplified());
    if (m_form.error.isEmpty() && m_widgets == 0)
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
        ++m_depth;
        if (m_depth == 2 && m_xml.name() == QLatin1String("connections")) {
            readConnections();
            --m_depth;
            return;
        }
        checkElement();
    } else if (m_xml.isEndElement()) {
        --m_depth;
    }
    m_writer.writeCurrentToken(m_xml);
}

void FormReader::checkElement()
{
    if (m_depth > PanelForm::MaxDepth)
        return fail(QStringLiteral("more than %1 elements inside each other").arg(PanelForm::MaxDepth));
    if (m_depth == 1 && m_xml.name() != QLatin1String("ui"))
        return fail(
            QStringLiteral("not a form: it begins with <%1>").arg(m_xml.name().toString().simplified().left(40)));
    if (m_xml.name() == QLatin1String("widget"))
        checkClass();
    else if (m_xml.name() == QLatin1String("item"))
        checkCell();
}

void FormReader::checkClass()
{
    if (++m_widgets > PanelForm::MaxWidgets)
        return fail(QStringLiteral("more than %1 widgets").arg(PanelForm::MaxWidgets));
    const QString name = m_xml.attributes().value(QLatin1String("class")).toString();
    if (!m_knownClasses.contains(name))
        fail(QStringLiteral("unknown widget class \"%1\"").arg(name.simplified().left(60)));
}

void FormReader::checkCell()
{
    for (const char *name : {"row", "column", "rowspan", "colspan"}) {
        const QStringRef text = m_xml.attributes().value(QLatin1String(name));
        bool isNumber = true;
        const int number = text.isEmpty() ? 0 : text.toInt(&isNumber);
        // A span of -1 reaches to the edge.
        if (!isNumber || number < -1 || number > PanelForm::MaxCell)
            return fail(QStringLiteral("%1 \"%2\" is not up to %3")
                            .arg(QLatin1String(name), text.toString().simplified().left(40))
                            .arg(PanelForm::MaxCell));
    }
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

void FormReader::fail(const QString &what)
{
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
