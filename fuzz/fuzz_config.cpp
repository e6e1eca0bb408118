// Configuration files: what was read, written again, must be read the same.

#include <qpiconfig.h>

#include <cstdint>
#include <cstdlib>

namespace
{

using Leaves = QList<QPIConfig::Leaf>;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// Names from a section line may hold what means something else at the start of a line.
bool canBeWritten(const QString &name)
{
    return !name.startsWith('[') && !name.startsWith('#') && !name.contains('=');
}

void checkLeaf(const QPIConfig::Leaf &leaf)
{
    require(!leaf.name().isEmpty() && !leaf.name().contains('.'));
    require(leaf.fullName() == leaf.name() || leaf.fullName().endsWith('.' + leaf.name()));
    require(leaf.value() == leaf.value().trimmed() && !leaf.value().contains('\n'));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const Leaves leaves = QPIConfig::fromText(input).allLeaves();
    require(leaves.size() <= input.count('='));

    QByteArray written("\n");
    Leaves expected;
    for (const QPIConfig::Leaf &leaf : leaves) {
        checkLeaf(leaf);
        if (!canBeWritten(leaf.fullName()))
            continue;
        written += leaf.fullName().toUtf8() + '=' + leaf.value().toUtf8() + '\n';
        expected << leaf;
    }

    const Leaves again = QPIConfig::fromText(written).allLeaves();
    require(again.size() == expected.size());
    for (int i = 0; i < again.size(); ++i)
        require(again.at(i).fullName() == expected.at(i).fullName() && again.at(i).value() == expected.at(i).value());
    return 0;
}
