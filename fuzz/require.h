/// \file
/// What every fuzz target needs: a check that ends the run, and silence on the debug stream.
#pragma once

#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

/// Ends the run, so that the fuzzer keeps the input, unless \a holds.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// Drops debug output: bad input is meant to be reported, millions of times.
inline void silenceDebugStream()
{
    static const QtMessageHandler usual =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    Q_UNUSED(usual)
}
