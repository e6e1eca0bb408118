/// \file
/// The device of a soak.
#pragma once

#include <answerpattern.h>
#include <localdevice.h>

/// A device with one command, two bytes, and one answer that is the same bytes.
class SoakDevice : public LocalDevice
{
public:
    explicit SoakDevice(QWidget *parent = nullptr)
        : LocalDevice(parent)
    {
        commands.insert(1, QStringLiteral("01 %(a0*1)"));
        answers.insert(1, {1, ~0});
    }

    int answersCount() const { return receivedCount; }
};
