// The checked variants of these functions must not stand in the way.
#undef _FORTIFY_SOURCE
#include "faultyline.h"

#include <QFile>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

using Kind = FaultyLine::Kind;
using Answer = FaultyLine::Answer;
using Call = FaultyLine::Call;

struct FaultyLine::State {
    std::mutex scriptMutex;
    Script script;
    std::mutex gate;  ///< Held while bytes go through, so that a vanishing falls between two writes.
    size_t taken = 0; ///< Bytes since the line came (back). Guarded by the gate.
};

namespace
{

constexpr int MostDescriptors = 4096;

struct Watched {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<FaultyLine::State>> lines;
    std::map<int, std::shared_ptr<FaultyLine::State>> descriptors;
    std::array<std::atomic<bool>, MostDescriptors> isWatched{};
    std::function<void()> sleepWatch;
};

/// Never destroyed: threads may still make calls while the program ends.
Watched &watched()
{
    static Watched *const all = new Watched;
    return *all;
}

thread_local int clockAdvance = 0;

std::atomic<int> spareDescriptors{-1};

/// False, with the errno for it, when none is left.
bool takeSpareDescriptor()
{
    if (spareDescriptors < 0 || spareDescriptors-- > 0)
        return true;
    spareDescriptors = 0;
    errno = EMFILE;
    return false;
}

using OpenFunction = int(const char *, int, ...);
using CloseFunction = int(int);
using ReadFunction = ssize_t(int, void *, size_t);
using WriteFunction = ssize_t(int, const void *, size_t);
using PollFunction = int(pollfd *, nfds_t, int);
using IoctlFunction = int(int, unsigned long, ...);
using FlockFunction = int(int, int);
using EpollFunction = int(int, int, int, epoll_event *);
using EpollCreateFunction = int(int) noexcept;
using EventFunction = int(unsigned, int);
using NanosleepFunction = int(const timespec *, timespec *);
using ClockFunction = int(clockid_t, timespec *);

/// The function that this program has taken the place of, looked up once.
template <typename Function>
Function *real(const char *name)
{
    static std::atomic<void *> found{nullptr}; // no two functions have the same type
    if (!found)
        found = ::dlsym(RTLD_NEXT, name);
    return reinterpret_cast<Function *>(found.load());
}

std::shared_ptr<FaultyLine::State> lineOf(int descriptor)
{
    if (descriptor < 0 || descriptor >= MostDescriptors || !watched().isWatched[size_t(descriptor)])
        return nullptr;
    const std::lock_guard<std::mutex> lock(watched().mutex);
    const auto found = watched().descriptors.find(descriptor);
    return found == watched().descriptors.end() ? nullptr : found->second;
}

std::shared_ptr<FaultyLine::State> lineOf(const char *path)
{
    if (!path)
        return nullptr;
    const std::lock_guard<std::mutex> lock(watched().mutex);
    const auto found = watched().lines.find(path);
    return found == watched().lines.end() ? nullptr : found->second;
}

void watch(int descriptor, const std::shared_ptr<FaultyLine::State> &line)
{
    const std::lock_guard<std::mutex> lock(watched().mutex);
    watched().descriptors[descriptor] = line;
    watched().isWatched[size_t(descriptor)] = true;
}

void forget(int descriptor)
{
    const std::lock_guard<std::mutex> lock(watched().mutex);
    watched().descriptors.erase(descriptor);
    watched().isWatched[size_t(descriptor)] = false;
}

Answer ask(FaultyLine::State &line, const Call &call)
{
    FaultyLine::Script script;
    {
        const std::lock_guard<std::mutex> lock(line.scriptMutex);
        script = line.script;
    }
    return script ? script(call) : Answer::pass();
}

/// The result of a call that does not reach the kernel.
int withoutKernel(const Answer &answer)
{
    if (answer.kind == Answer::Kind::Pretend)
        return answer.value;
    errno = answer.value;
    return -1;
}

bool reachesKernel(const Answer &answer)
{
    return answer.kind == Answer::Kind::Pass || answer.kind == Answer::Kind::Limit;
}

size_t limited(const Answer &answer, size_t size)
{
    return answer.kind == Answer::Kind::Limit ? std::min(size, size_t(answer.value)) : size;
}

int openLine(const char *path, int flags, mode_t mode)
{
    const auto line = lineOf(path);
    const Answer answer = line ? ask(*line, {Kind::Open, 0, nullptr, {}}) : Answer::pass();
    if (!reachesKernel(answer))
        return withoutKernel(answer);
    const int descriptor = real<OpenFunction>("open")(path, flags, mode);
    if (descriptor >= 0 && line)
        watch(descriptor, line);
    return descriptor;
}

} // namespace

extern "C" {

int __open_2(const char *path, int flags);

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(arguments, mode_t) : mode_t(0);
    va_end(arguments);
    return openLine(path, flags, mode);
}

/// What an optimised build calls when it cannot see the flags.
int __open_2(const char *path, int flags)
{
    return openLine(path, flags, 0);
}

int close(int descriptor)
{
    const auto line = lineOf(descriptor);
    if (line) {
        ask(*line, {Kind::Close, 0, nullptr, {}});
        forget(descriptor);
    }
    return real<CloseFunction>("close")(descriptor);
}

ssize_t read(int descriptor, void *data, size_t size)
{
    const auto line = lineOf(descriptor);
    const Answer answer = line ? ask(*line, {Kind::Read, 0, nullptr, {}}) : Answer::pass();
    return reachesKernel(answer) ? real<ReadFunction>("read")(descriptor, data, limited(answer, size))
                                 : withoutKernel(answer);
}

ssize_t write(int descriptor, const void *data, size_t size)
{
    const auto line = lineOf(descriptor);
    if (!line)
        return real<WriteFunction>("write")(descriptor, data, size);
    const Answer answer = ask(*line, {Kind::Write, 0, nullptr, std::string(static_cast<const char *>(data), size)});
    if (!reachesKernel(answer))
        return withoutKernel(answer);
    const std::lock_guard<std::mutex> lock(line->gate);
    const ssize_t written = real<WriteFunction>("write")(descriptor, data, limited(answer, size));
    line->taken += written > 0 ? size_t(written) : 0;
    return written;
}

// Its declaration says that it only writes to the descriptors; that concerns its callers.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
int poll(pollfd *descriptors, nfds_t count, int timeoutMs)
{
    const auto line = count == 1 ? lineOf(descriptors->fd) : std::shared_ptr<FaultyLine::State>();
    const Answer answer = line ? ask(*line, {Kind::Poll, 0, nullptr, {}}) : Answer::pass();
    return reachesKernel(answer) ? real<PollFunction>("poll")(descriptors, count, timeoutMs) : withoutKernel(answer);
}

#pragma GCC diagnostic pop

int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    const auto line = lineOf(descriptor);
    const Answer answer = line ? ask(*line, {Kind::Ioctl, request, argument, {}}) : Answer::pass();
    return reachesKernel(answer) ? real<IoctlFunction>("ioctl")(descriptor, request, argument) : withoutKernel(answer);
}

int flock(int descriptor, int operation) noexcept
{
    const auto line = lineOf(descriptor);
    const Answer answer = line ? ask(*line, {Kind::Flock, 0, nullptr, {}}) : Answer::pass();
    return reachesKernel(answer) ? real<FlockFunction>("flock")(descriptor, operation) : withoutKernel(answer);
}

int epoll_ctl(int instance, int operation, int descriptor, epoll_event *event) noexcept
{
    const auto line = operation == EPOLL_CTL_ADD ? lineOf(descriptor) : nullptr;
    const Answer answer = line ? ask(*line, {Kind::Watch, 0, nullptr, {}}) : Answer::pass();
    return reachesKernel(answer) ? real<EpollFunction>("epoll_ctl")(instance, operation, descriptor, event)
                                 : withoutKernel(answer);
}

int epoll_create1(int flags) noexcept
{
    return takeSpareDescriptor() ? real<EpollCreateFunction>("epoll_create1")(flags) : -1;
}

int eventfd(unsigned count, int flags) noexcept
{
    return takeSpareDescriptor() ? real<EventFunction>("eventfd")(count, flags) : -1;
}

int nanosleep(const timespec *time, timespec *rest)
{
    std::function<void()> watch;
    {
        const std::lock_guard<std::mutex> lock(watched().mutex);
        watch = watched().sleepWatch;
    }
    if (watch)
        watch();
    return real<NanosleepFunction>("nanosleep")(time, rest);
}

int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const int result = real<ClockFunction>("clock_gettime")(clock, time);
    if (clock == CLOCK_MONOTONIC && result == 0)
        time->tv_sec += clockAdvance;
    return result;
}

} // extern "C"

void watchLine(const std::string &path, FaultyLine::Script script)
{
    const auto line = std::make_shared<FaultyLine::State>();
    line->script = std::move(script);
    const std::lock_guard<std::mutex> lock(watched().mutex);
    watched().lines[path] = line;
}

void setSleepWatch(std::function<void()> watch)
{
    const std::lock_guard<std::mutex> lock(watched().mutex);
    watched().sleepWatch = std::move(watch);
}

void setSpareDescriptors(int count)
{
    spareDescriptors = count;
}

void advanceThreadClock(int seconds)
{
    clockAdvance += seconds;
}

FaultyLine::FaultyLine()
    : m_state(std::make_shared<State>())
{
    const std::lock_guard<std::mutex> lock(watched().mutex);
    watched().lines[QFile::encodeName(path()).toStdString()] = m_state;
}

FaultyLine::~FaultyLine()
{
    setScript(nullptr);
    const std::lock_guard<std::mutex> lock(watched().mutex);
    watched().lines.erase(QFile::encodeName(path()).toStdString());
}

void FaultyLine::setScript(Script script)
{
    const std::lock_guard<std::mutex> lock(m_state->scriptMutex);
    m_state->script = std::move(script);
}

void FaultyLine::vanish()
{
    const std::lock_guard<std::mutex> lock(m_state->gate);
    readTakenLocked();
    m_pty.vanish();
}

void FaultyLine::comeBack()
{
    const std::lock_guard<std::mutex> lock(m_state->gate);
    m_pty.comeBack();
    m_state->taken = 0;
    m_receivedHere = 0;
}

void FaultyLine::readTaken()
{
    const std::lock_guard<std::mutex> lock(m_state->gate);
    readTakenLocked();
}

void FaultyLine::readTakenLocked()
{
    if (!m_pty.isConnected() || m_state->taken <= m_receivedHere)
        return;
    const QByteArray bytes = m_pty.read(int(m_state->taken - m_receivedHere));
    m_received += bytes.toStdString();
    m_receivedHere += size_t(bytes.size());
}

void FaultyLine::readSome()
{
    char bytes[4096];
    const ssize_t got = m_pty.isConnected() ? ::read(m_pty.master(), bytes, sizeof bytes) : 0;
    if (got <= 0)
        return;
    m_received.append(bytes, size_t(got));
    m_receivedHere += size_t(got);
}
