#include "Terminal/Interrupts.h"

#include <array>
#include <atomic>
#include <csignal>
#include <poll.h>

namespace zelk::engine {

namespace {

constexpr std::array endings{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> caught = 0;
std::atomic<WakePipe *> onEnding = nullptr;
std::atomic<WakePipe *> onResize = nullptr;

void end(int number) {
    if (caught.exchange(number) != 0) {
        std::signal(number, SIG_DFL);
        ::raise(number); // taken as soon as this returns
        return;
    }
    if (WakePipe *pipe = onEnding.load()) {
        pipe->wake();
    }
}

void resize(int) {
    if (WakePipe *pipe = onResize.load()) {
        pipe->wake();
    }
}

void handle(int number, void (*handler)(int)) {
    struct sigaction before {};
    ::sigaction(number, nullptr, &before);
    if (before.sa_handler == SIG_IGN) {
        return;
    }
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(number, &action, nullptr);
}

} // namespace

Interrupts::Interrupts() {
    caught = 0;
    onEnding = &_ending;
    onResize = &_resized;
    for (const int number : endings) {
        handle(number, end);
    }
    handle(SIGWINCH, resize);
}

Interrupts::~Interrupts() {
    for (const int number : endings) {
        handle(number, SIG_DFL);
    }
    handle(SIGWINCH, SIG_DFL);
    onEnding = nullptr;
    onResize = nullptr;
}

int Interrupts::signal() const {
    return caught;
}

int Interrupts::descriptor() const {
    return _ending.descriptor();
}

void Interrupts::wait(int first, int second) {
    pollfd waits[] = {{first, POLLIN, 0},
                      {second, POLLIN, 0},
                      {signal() == 0 ? _ending.descriptor() : -1, POLLIN, 0},
                      {_resized.descriptor(), POLLIN, 0}};
    ::poll(waits, 4, -1);
    _resized.rest();
}

SignalsHeld::SignalsHeld() {
    sigset_t held;
    sigemptyset(&held);
    for (const int number : endings) {
        sigaddset(&held, number);
    }
    ::pthread_sigmask(SIG_BLOCK, &held, &_before);
}

SignalsHeld::~SignalsHeld() {
    ::pthread_sigmask(SIG_SETMASK, &_before, nullptr);
}

} // namespace zelk::engine
