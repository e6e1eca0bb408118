// Feeds texts to the evaluator of command expressions; the first byte chooses the variables' values.

#include <pievaluator.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const double first = double(data[0]) - 128.0;
    PIEvaluator evaluator;
    PIEvaluatorContent &content = evaluator.content();
    content.addVariable("a0", first);
    content.addVariable("a1", 300.0);
    content.addVariable("a-1", -1.0);
    content.addVariable("z", {first, 2.5});
    content.sortVariables();

    const PIString text = PIString::fromUtf8(reinterpret_cast<const char *>(data + 1), int(size - 1));
    const bool good = evaluator.check(text);
    if (good != evaluator.error().isEmpty())
        std::abort();
    evaluator.evaluate();

    // The same text again, with other values, comes from the kept expression.
    content.setVariableValue(0, 2.5);
    content.setVariableValue(1, 0.0);
    if (good && !evaluator.check(text))
        std::abort();
    evaluator.evaluate();
    return 0;
}
