/// \file
/// What the tests of the local device have in common.
#pragma once

#include <localdevice.h>
#include <piqt.h>

#include <QStringList>

/// A local device whose state a test may look into and set.
class BenchDevice : public LocalDevice
{
    Q_OBJECT

public:
    using LocalDevice::LocalDevice;

    using LocalDevice::answerArguments;
    using LocalDevice::answers;
    using LocalDevice::arguments;
    using LocalDevice::commandDescriptions;
    using LocalDevice::commands;
    using LocalDevice::deviceID;
    using LocalDevice::evaluator;
    using LocalDevice::receivedCount;
    using LocalDevice::sentCount;
};

/// Writes down the answer signals of a device, in the order in which they come.
class AnswerLog : public QObject
{
    Q_OBJECT

public:
    explicit AnswerLog(LocalDevice *device)
    {
        connect(device, &LocalDevice::receivedAnswerID, this, [this](int id) { add("ID %1", id); });
        connect(device, &LocalDevice::receivedAnswerArg, this,
                [this](int number, int value) { entries << QStringLiteral("Arg %1 = %2").arg(number).arg(value); });
        connect(device, &LocalDevice::receivedAnswerArg0, this, [this](int value) { add("Arg0 %1", value); });
        connect(device, &LocalDevice::receivedAnswerArg1, this, [this](int value) { add("Arg1 %1", value); });
        connect(device, &LocalDevice::receivedAnswerArg2, this, [this](int value) { add("Arg2 %1", value); });
        connect(device, &LocalDevice::receivedAnswerArg3, this, [this](int value) { add("Arg3 %1", value); });
    }

    QStringList entries;

private:
    void add(const char *what, int value) { entries << QString::fromLatin1(what).arg(value); }
};

inline QString hex(const PIByteArray &bytes)
{
    return QString::fromLatin1(PI2QByteArray(bytes).toHex(' ')).toUpper();
}
