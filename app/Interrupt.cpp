// What a signal may do is little: it goes through a table of slots that is always there, and
// removes the files in it. A slot that a thread is just making or moving a file in is waited for:
// that takes no longer than a call of the system.

#include "app/Interrupt.h"

#include <array>

#if defined(_WIN32)
#include <windows.h>
#else
#include <csignal>
#include <ctime>
#include <pthread.h>
#include <unistd.h>
#endif

namespace convfile::app {

namespace {

enum class State : unsigned char {
    Free,
    Busy,       ///< its file is just being made, moved or removed
    Unfinished, ///< its file is there
    Gone,       ///< an interrupt removed its file, and the program ends
};

} // namespace

struct Leftover::Slot {
    std::atomic<State> state = State::Free;
    std::atomic<const std::filesystem::path::value_type*> name = nullptr;
};

namespace {

/// What a signal needs, and nothing else.
std::array<Leftover::Slot, Leftover::kMost> slots;
std::atomic<bool> ending = false;

void WaitABit() {
#if defined(_WIN32)
    Sleep(1);
#else
    const timespec millisecond = {0, 1'000'000};
    nanosleep(&millisecond, nullptr);
#endif
}

[[noreturn]] void WaitForTheEnd() {
    while (true)
        WaitABit();
}

void RemoveFile(const std::filesystem::path::value_type* name) {
#if defined(_WIN32)
    DeleteFileW(name);
#else
    unlink(name);
#endif
}

void RemoveUnfinished() {
    for (Leftover::Slot& slot : slots) {
        State state = slot.state;
        while (state == State::Busy || state == State::Unfinished) {
            if (state == State::Busy)
                WaitABit();
            else if (slot.state.compare_exchange_strong(state, State::Gone))
                RemoveFile(slot.name);
            state = slot.state;
        }
    }
}

#if defined(_WIN32)

/// Called on a thread of its own; the system ends the program behind it.
BOOL WINAPI OnInterrupt(DWORD) {
    if (!ending.exchange(true))
        RemoveUnfinished();
    return FALSE;
}

void Watch() {
    SetConsoleCtrlHandler(OnInterrupt, TRUE);
}

/// Keeps interrupts from this thread.
struct Undisturbed {};

#else

constexpr std::array kInterrupts = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

void OnInterrupt(int signal) {
    if (ending.exchange(true))
        return;
    RemoveUnfinished();
    std::signal(signal, SIG_DFL);
    std::raise(signal); // comes when this returns, and ends the program as it would have before
}

sigset_t AllInterrupts() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : kInterrupts)
        sigaddset(&set, signal);
    return set;
}

void Watch() {
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    action.sa_mask = AllInterrupts();
    for (const int signal : kInterrupts) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_DFL) // who told the program to ignore it meant that
            sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN); // a file over its limit is a write that fails
}

/// Keeps interrupts from this thread, so that none of them waits for what it interrupted.
class Undisturbed {
public:
    Undisturbed() {
        const sigset_t all = AllInterrupts();
        pthread_sigmask(SIG_BLOCK, &all, &before_);
    }
    Undisturbed(const Undisturbed&) = delete;
    Undisturbed& operator=(const Undisturbed&) = delete;
    ~Undisturbed() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

#endif

Leftover::Slot* TakeSlot() {
    for (Leftover::Slot& slot : slots) {
        State state = State::Free;
        if (slot.state.compare_exchange_strong(state, State::Busy))
            return &slot;
    }
    return nullptr;
}

} // namespace

bool Leftover::Make(const std::filesystem::path& path, const std::function<bool()>& make) {
    static const bool watching = (Watch(), true);
    [[maybe_unused]] const Undisturbed undisturbed;
    slot_ = watching ? TakeSlot() : nullptr;
    if (!slot_)
        return false;
    if (ending) {
        slot_->state = State::Free;
        WaitForTheEnd();
    }
    path_ = path;
    slot_->name = path_.c_str();
    const bool made = make();
    slot_->state = made ? State::Unfinished : State::Free;
    if (!made)
        slot_ = nullptr;
    return made;
}

void Leftover::End(const std::function<void()>& end) {
    if (!slot_)
        return;
    [[maybe_unused]] const Undisturbed undisturbed;
    State state = State::Unfinished;
    if (!slot_->state.compare_exchange_strong(state, State::Busy))
        WaitForTheEnd();
    end();
    slot_->state = State::Free;
    slot_ = nullptr;
}

} // namespace convfile::app
