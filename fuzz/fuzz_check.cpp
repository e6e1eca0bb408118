// Any bytes as a form that is checked: findings have a place in it and say something.

#include "require.h"

#include <check/check.h>
#include <command.h>

#include <QApplication>

#include <cstdint>

namespace
{

/// The classes are asked what they have, which takes an application; nothing is shown. It lives until the process
/// ends: torn down at exit, it would leave its thread's font cache without an owner.
void makeApplication()
{
    static int argc = 1;
    static char name[] = "fuzz_check";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const auto *application = new QApplication(argc, argv);
    Q_UNUSED(application)
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    silenceDebugStream();
    makeApplication();
    const QByteArray text(reinterpret_cast<const char *>(data), int(size));
    Findings findings;
    try {
        checkForm(text, QStringLiteral("form.ui"), findings);
    } catch (const CommandError &error) {
        require(*error.what() != '\0', "an error says something");
        return 0;
    }
    const int lines = text.count('\n') + text.count('\r') + 1;
    for (const Finding &finding : findings.sorted()) {
        require(finding.line >= 1 && finding.line <= lines, "a finding stands in the form");
        require(!finding.message.isEmpty() && !finding.message.contains(QLatin1Char('\n')), "a finding is a line");
    }
    return 0;
}
