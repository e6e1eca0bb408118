// Any bytes as a catalogue's source: reading ends with rows or with lines that say what is wrong, and rows
// without mistakes can be written as a source that reads the same.

#include <catalogue/cataloguesource.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const CatalogueSource source =
        CatalogueSource::fromText(QByteArray(reinterpret_cast<const char *>(data), int(size)));
    for (const CatalogueFinding &finding : source.findings) {
        if (finding.text.contains(QLatin1Char('\n')) || finding.place.line < 1)
            std::abort();
    }
    if (!source.findings.isEmpty())
        return 0;

    const CatalogueSource again = CatalogueSource::fromText(catalogueSourceText(source.data));
    if (!again.findings.isEmpty())
        std::abort();
    forEachCatalogueSection([&](CatalogueSection section) {
        const QVector<CatalogueRow> &rows = source.data.rows(section);
        if (rows.size() != again.data.rows(section).size())
            std::abort();
        for (int i = 0; i < rows.size(); ++i) {
            if (rows.at(i).cells != again.data.rows(section).at(i).cells)
                std::abort();
        }
    });
    return 0;
}
