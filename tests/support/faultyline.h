/// \file
/// A line whose calls go wrong.
#pragma once

#include "ptypair.h"

#include <functional>
#include <memory>
#include <string>

/// A pseudo terminal between whose near end and the program stands a script: it sees every call that
/// the program makes on the descriptors that it opened by path(), and says how the call ends.
///
/// Works by giving the test program functions of the C library's names; compile faultyline.cpp into
/// every test that uses it, with ENABLE_EXPORTS. Any number of lines may exist.
class FaultyLine
{
public:
    enum class Kind { Open, Read, Write, Poll, Ioctl, Flock, Watch, Close }; ///< Watch: by epoll_ctl().

    struct Call {
        Kind kind = Kind::Write;
        unsigned long request = 0; ///< Of an ioctl.
        void *argument = nullptr;  ///< Of an ioctl.
        std::string bytes;         ///< That are to be written.
    };

    /// How a call ends.
    struct Answer {
        enum class Kind { Pass, Limit, Fail, Pretend };

        Kind kind = Kind::Pass;
        int value = 0;

        static Answer pass() { return {}; }
        static Answer limit(int bytes) { return {Kind::Limit, bytes}; }       ///< Reads or writes that many at most.
        static Answer fail(int error) { return {Kind::Fail, error}; }         ///< With that errno; nothing is done.
        static Answer pretend(int result) { return {Kind::Pretend, result}; } ///< Returns that; nothing is done.
    };

    /// Called on the thread that makes the call, and may keep it there. Several threads at once.
    using Script = std::function<Answer(const Call &)>;

    FaultyLine();
    ~FaultyLine();

    FaultyLine(const FaultyLine &) = delete;
    FaultyLine &operator=(const FaultyLine &) = delete;

    QString path() const { return m_pty.path(); }
    PtyPair &pty() { return m_pty; }

    void setScript(Script script); ///< Null: everything passes. A call that runs keeps the one before.

    /// The far end reads what the near end has got rid of so far, without a gap in time before it goes:
    /// nothing that was taken is lost.
    void vanish();
    void comeBack();

    /// Reads all that the near end has got rid of so far.
    void readTaken();

    /// Reads what is there now; leaves the line full when not called.
    void readSome();

    /// All that the far end has read, also from lines that went away.
    const std::string &received() const { return m_received; }

    struct State;

private:
    void readTakenLocked();

    PtyPair m_pty;
    std::shared_ptr<State> m_state;
    std::string m_received;
    size_t m_receivedHere = 0; ///< Since the line came (back).
};

/// Puts \a script between the program and the descriptors that it opens by \a path, until it ends.
void watchLine(const std::string &path, FaultyLine::Script script);

/// A sleep of the program, whatever its descriptors; null for none. Any thread.
void setSleepWatch(std::function<void()> watch);

/// How many more descriptors the program can have for its event loops; negative for any number.
void setSpareDescriptors(int count);

/// Moves the steady clock of the calling thread, and only its, forward.
void advanceThreadClock(int seconds);
