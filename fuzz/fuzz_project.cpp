// A project file: whatever is accepted is written and read again without change.

#include <serverproject.h>

#include <QBuffer>

#include <cstdint>
#include <cstdlib>

using Kv_Designer::ServerProject;

namespace
{

bool read(ServerProject &project, QByteArray bytes)
{
    QBuffer buffer(&bytes);
    return buffer.open(QIODevice::ReadOnly) && project.read(buffer) == ServerProject::ReadResult::Good;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ServerProject project;
    if (!read(project, QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size))))
        return 0;

    ServerProject again;
    const QByteArray written = project.toByteArray();
    if (!read(again, written) || again.toByteArray() != written || project.version <= 0)
        std::abort();
    return 0;
}
