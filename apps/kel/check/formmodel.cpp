#include "check/formmodel.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

namespace
{

/// Reads a form in one pass. How deep its elements are was looked at before.
class FormModelReader
{
public:
    explicit FormModelReader(const QByteArray &text)
        : m_xml(text)
    {
    }

    FormModel read();

private:
    static bool isObject(const QString &element);
    void readElement(const QString &element);
    void beginObject(const QString &element);
    void readProperty(bool isKept);
    void readValue(const QString &element, FormProperty &property);
    void readInside();
    void readIcon();
    QString readText();
    void addPicture(const QString &path, int line);
    void addPicturesOfStyle(const QString &style, int line);

    static constexpr int NoObject = -1;

    QXmlStreamReader m_xml;
    FormModel m_form;
    QVector<int> m_open; ///< For each open element the object that it is, or NoObject.
};

FormModel FormModelReader::read()
{
    while (!m_xml.atEnd()) {
        m_xml.readNext();
        if (m_xml.isStartElement())
            readElement(m_xml.name().toString());
        else if (m_xml.isEndElement() && !m_open.isEmpty())
            m_open.removeLast();
    }
    return m_form;
}

bool FormModelReader::isObject(const QString &element)
{
    for (const char *object : {"widget", "layout", "action", "actiongroup", "buttongroup"}) {
        if (element == QLatin1String(object))
            return true;
    }
    return false;
}

/// Enters the element, or reads it to its end.
void FormModelReader::readElement(const QString &element)
{
    if (m_open.size() == 1 && element == QLatin1String("connections"))
        return m_xml.skipCurrentElement();
    if (element == QLatin1String("property") || element == QLatin1String("attribute"))
        return readProperty(element == QLatin1String("property"));
    m_open.append(NoObject);
    if (isObject(element))
        beginObject(element);
}

void FormModelReader::beginObject(const QString &element)
{
    const QXmlStreamAttributes attributes = m_xml.attributes();
    FormObject object;
    object.element = element;
    object.className = attributes.value(QLatin1String("class")).toString();
    object.name = attributes.value(QLatin1String("name")).toString();
    object.line = int(m_xml.lineNumber());
    m_open.last() = int(m_form.objects.size());
    m_form.objects.append(object);
}

/// Reads a property, or an attribute of a page, to its end.
void FormModelReader::readProperty(bool isKept)
{
    const QString name = m_xml.attributes().value(QLatin1String("name")).toString();
    FormProperty property;
    property.line = int(m_xml.lineNumber());
    while (m_xml.readNextStartElement())
        readValue(m_xml.name().toString(), property);
    if (name == QLatin1String("styleSheet"))
        addPicturesOfStyle(property.text, property.line);
    if (isKept && !m_open.isEmpty() && m_open.last() != NoObject)
        m_form.objects[m_open.last()].properties.insert(name, property);
}

/// Reads one element of a property's value to its end.
void FormModelReader::readValue(const QString &element, FormProperty &property)
{
    for (const char *plain : {"string", "number", "double", "bool", "enum", "set", "cstring"}) {
        if (element == QLatin1String(plain)) {
            property.text = readText();
            return;
        }
    }
    if (element == QLatin1String("iconset"))
        return readIcon();
    if (element == QLatin1String("pixmap"))
        return addPicture(readText(), property.line);
    // Whatever else there is, a picture may be deep inside it.
    while (m_xml.readNextStartElement()) {
        if (element == QLatin1String("stringlist"))
            property.list << readText();
        else
            readInside();
    }
}

/// Reads an element inside a value to its end.
void FormModelReader::readInside()
{
    const int line = int(m_xml.lineNumber());
    if (m_xml.name() == QLatin1String("pixmap"))
        return addPicture(readText(), line);
    while (m_xml.readNextStartElement())
        readInside();
}

/// An icon names a picture for each of its states, or else one as its own text.
void FormModelReader::readIcon()
{
    const int line = int(m_xml.lineNumber());
    QString own;
    bool hasStates = false;
    while (!m_xml.atEnd()) {
        m_xml.readNext();
        if (m_xml.isEndElement())
            break;
        if (m_xml.isCharacters())
            own += m_xml.text();
        if (!m_xml.isStartElement())
            continue;
        hasStates = true;
        const int stateLine = int(m_xml.lineNumber());
        addPicture(readText(), stateLine);
    }
    if (!hasStates)
        addPicture(own, line);
}

QString FormModelReader::readText()
{
    return m_xml.readElementText(QXmlStreamReader::SkipChildElements);
}

void FormModelReader::addPicture(const QString &path, int line)
{
    const QString trimmed = path.trimmed();
    if (!trimmed.isEmpty())
        m_form.pictures.append({trimmed, line});
}

void FormModelReader::addPicturesOfStyle(const QString &style, int line)
{
    static const QRegularExpression Url(QStringLiteral("\\burl\\(\\s*[\"']?([^\"')]*)[\"']?\\s*\\)"));
    for (auto match = Url.globalMatch(style); match.hasNext();)
        addPicture(match.next().captured(1), line);
}

} // namespace

FormModel FormModel::fromText(const QByteArray &text)
{
    return FormModelReader(text).read();
}
