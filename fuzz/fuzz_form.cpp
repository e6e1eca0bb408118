// Any bytes as a form: the look over it ends, and what it lets pass is well-formed and within limits.

#include <panel/formlimits.h>
#include <panel/panelform.h>

#include <QXmlStreamReader>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QStringList Classes = {QStringLiteral("QWidget"), QStringLiteral("KelButton")};
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    const PanelForm form = PanelForm::fromText(text, QStringLiteral("form.ui"), Classes);
    if (!form.error.isEmpty())
        return 0;

    QXmlStreamReader again(form.text);
    int depth = 0;
    while (!again.atEnd()) {
        const QXmlStreamReader::TokenType token = again.readNext();
        depth += token == QXmlStreamReader::StartElement ? 1 : token == QXmlStreamReader::EndElement ? -1 : 0;
        if (depth > FormLimits::MaxDepth)
            std::abort();
    }
    if (again.hasError())
        std::abort();
    return 0;
}
