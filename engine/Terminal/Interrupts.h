#pragma once

#include "Serve/WakePipe.h"

#include <signal.h>

namespace zelk::engine {

/// While it lives, the first signal to end (SIGINT, SIGTERM, SIGHUP) only makes a descriptor readable, and so does a
/// change of the terminal's size; the second one ends the process at once. What was ignored before, as nohup does,
/// stays ignored. One at a time.
class Interrupts {
public:
    Interrupts();
    ~Interrupts();
    Interrupts(const Interrupts &) = delete;
    Interrupts &operator=(const Interrupts &) = delete;

    /// The signal to end that has come, or 0.
    int signal() const;

    /// Waits until one of these is readable, or a signal has come. -1 stands for none.
    void wait(int first, int second = -1);

    /// Readable once a signal to end has come.
    int descriptor() const;

private:
    WakePipe _ending;
    WakePipe _resized;
};

/// While it lives, signals to end wait. Threads that are begun meanwhile never take them, and neither do their
/// children: Ctrl+C goes to all programs of a terminal, and a converter must not be struck by one that is meant for us.
class SignalsHeld {
public:
    SignalsHeld();
    ~SignalsHeld();
    SignalsHeld(const SignalsHeld &) = delete;
    SignalsHeld &operator=(const SignalsHeld &) = delete;

private:
    sigset_t _before{};
};

} // namespace zelk::engine
