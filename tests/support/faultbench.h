/// \file
/// A queued device on a line whose calls go wrong, and its books.
#pragma once

#include "fakepins.h"
#include "faultyline.h"
#include "linebooks.h"
#include "stderrcapture.h"

#include <gserial.h>
#include <piqt.h>

#include <memory>
#include <thread>

/// Waits for \a condition, 20 seconds at most; what it is then. Any thread.
inline bool waitUntil(const std::function<bool()> &condition)
{
    for (int i = 0; i < 20000 && !condition(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}

/// Pin 18, low while reading, high while sending.
struct FaultBench {
    /// What several benches share: one of each can exist at a time.
    struct Surroundings {
        FakePins pins;
        StderrCapture console;
    };

    std::shared_ptr<Surroundings> surroundings;
    FaultyLine line;
    LineBooks books;
    std::unique_ptr<PIGSerial> serial = std::make_unique<PIGSerial>();

    explicit FaultBench(int speed = 4000000, std::shared_ptr<Surroundings> shared = std::make_shared<Surroundings>())
        : surroundings(std::move(shared))
    {
        const QString text = QStringLiteral("18:0:1:%1:%2:8:N:1").arg(line.path()).arg(speed);
        serial->configureFromFullPathDevice(Q2PIString(text));
    }

    FakePins &pins() { return surroundings->pins; }

    /// The console lines about this port.
    QStringList console() const { return surroundings->console.lines().filter(line.path() + QLatin1Char(' ')); }

    /// Queues one more block; returns it.
    std::string write(int size = 0)
    {
        const std::string block = books.next(0, size);
        serial->write(block.data(), int(block.size()));
        return block;
    }

    std::string writeSeveral(int count, int size = 0)
    {
        std::string blocks;
        for (int i = 0; i < count; ++i)
            blocks += write(size);
        return blocks;
    }

    void tick(int count)
    {
        for (int i = 0; i < count; ++i)
            serial->tickWrite();
    }

    /// As many ticks as there can be blocks, and what they send is read.
    void sendWaiting()
    {
        line.readTaken();
        for (size_t i = 0; i <= books.count(); ++i) {
            tick(1);
            line.readTaken();
        }
    }

    /// Everything passes from now on: opens if necessary, sends what waits and reads it.
    bool sendAll()
    {
        line.setScript(nullptr);
        if (!serial->open())
            return false;
        // That an earlier line went away may be found out only now.
        do {
            if (!waitUntil([this] { return serial->isOpened(); }))
                return false;
            sendWaiting();
        } while (!serial->isOpened());
        return true;
    }

    /// Destroys the device; what is wrong with its books, empty when nothing is.
    QString finish()
    {
        line.setScript(nullptr);
        serial.reset();
        line.readTaken();
        return QString::fromStdString(books.mistake(line.received(), console()));
    }

    /// How many console lines say \a why.
    int lines(const char *why) const { return int(console().filter(QLatin1String(why)).size()); }
};
