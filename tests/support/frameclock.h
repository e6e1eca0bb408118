/// \file
/// Animations without waiting.
#pragma once

#include <QAnimationDriver>

/// While it lives, the animations of the program run by this clock and stand still between its ticks. One at a time.
class FrameClock : public QAnimationDriver
{
public:
    FrameClock();
    ~FrameClock() override;

    FrameClock(const FrameClock &) = delete;
    FrameClock &operator=(const FrameClock &) = delete;

    void pass(int milliseconds); ///< One frame that comes so much later than the one before.
    qint64 elapsed() const override { return m_elapsedMs; }

protected:
    void start() override;

private:
    qint64 m_elapsedMs = 0; ///< Since the first animation started; new ones may join.
};
