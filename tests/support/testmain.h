/// \file
/// The `main` of every test program: as QTEST_MAIN, and a Qt warning that no test expected (by
/// QTest::ignoreMessage) fails the run.
#pragma once

#include <QApplication>
#include <QtTest>

/// Runs \a test with \a arguments; returns the number of failures, unexpected warnings included.
int runKelTest(QObject *test, const QStringList &arguments);

#define KEL_TEST_MAIN(TestClass)                                                                                       \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        QApplication app(argc, argv);                                                                                  \
        TestClass test;                                                                                                \
        return runKelTest(&test, app.arguments());                                                                     \
    }
