// Tells the thread sanitizer what Qt's futures and semaphores and C++'s exceptions order. Debian's libraries aren't
// instrumented, so it sees results written on one thread and read on another, and nothing in between. The functions
// below stand in front of the libraries' own of the same names in programs that are built with that sanitizer, and only
// there.
//
// What is handed over hangs on a future's shared state, which all copies of a QFuture, QPromise and QFutureInterface
// point to, on the semaphore, or on the exception, which all copies of an exception_ptr point to.

#include <dlfcn.h>

#include <cstdlib>

extern "C" void __tsan_acquire(void *address);
extern "C" void __tsan_release(void *address);

namespace {

template<class Function>
Function *behind(Function *, const char *name) {
    void *const found = dlsym(RTLD_NEXT, name);
    if (!found)
        std::abort(); // another Qt, with other names
    return reinterpret_cast<Function *>(found);
}

/// A QFutureInterfaceBase has one member, behind the pointer to its virtual functions: that to the shared state.
void *stateOf(void *future) {
    return static_cast<void **>(future)[1];
}

/// Also when the call throws, for then it hands over an exception.
struct Acquiring {
    void *address;
    ~Acquiring() { __tsan_acquire(address); }
};

} // namespace

#define IN_FRONT_OF(result, function, symbol, ...)                                                                     \
    extern "C" result function(__VA_ARGS__) __asm__(symbol);                                                           \
    extern "C" result function(__VA_ARGS__)
#define REAL(function, symbol) static auto *const real = behind(&function, symbol)

#define FUTURE_HANDS_OVER(function, symbol, parameters, arguments)                                                     \
    extern "C" void function parameters __asm__(symbol);                                                               \
    extern "C" void function parameters {                                                                              \
        REAL(function, symbol);                                                                                        \
        __tsan_release(stateOf(self));                                                                                 \
        real arguments;                                                                                                \
    }
#define FUTURE_TAKES_OVER(result, function, symbol, parameters, arguments)                                             \
    extern "C" result function parameters __asm__(symbol);                                                             \
    extern "C" result function parameters {                                                                            \
        REAL(function, symbol);                                                                                        \
        const Acquiring acquiring{stateOf(self)};                                                                      \
        return real arguments;                                                                                         \
    }

FUTURE_HANDS_OVER(reportFinished, "_ZN20QFutureInterfaceBase14reportFinishedEv", (void *self), (self))
FUTURE_HANDS_OVER(reportResultsReady, "_ZN20QFutureInterfaceBase18reportResultsReadyEii",
                  (void *self, int from, int to), (self, from, to))
FUTURE_HANDS_OVER(reportException, "_ZN20QFutureInterfaceBase15reportExceptionENSt15__exception_ptr13exception_ptrE",
                  (void *self, void *exception), (self, exception))

FUTURE_TAKES_OVER(void, waitForResult, "_ZN20QFutureInterfaceBase13waitForResultEi", (void *self, int index),
                  (self, index))
FUTURE_TAKES_OVER(void, waitForFinished, "_ZN20QFutureInterfaceBase15waitForFinishedEv", (void *self), (self))
FUTURE_TAKES_OVER(void, rethrowPossible, "_ZN20QFutureInterfaceBase24rethrowPossibleExceptionEv", (void *self), (self))
FUTURE_TAKES_OVER(void *, exceptionStore, "_ZN20QFutureInterfaceBase14exceptionStoreEv", (void *self), (self))
FUTURE_TAKES_OVER(bool, hasException, "_ZNK20QFutureInterfaceBase12hasExceptionEv", (void *self), (self))
FUTURE_TAKES_OVER(bool, isFinished, "_ZNK20QFutureInterfaceBase10isFinishedEv", (void *self), (self))
FUTURE_TAKES_OVER(bool, isResultReadyAt, "_ZNK20QFutureInterfaceBase15isResultReadyAtEi", (void *self, int index),
                  (self, index))
FUTURE_TAKES_OVER(bool, queryState, "_ZNK20QFutureInterfaceBase10queryStateENS_5StateE", (void *self, int state),
                  (self, state))

// Whoever lets the state go last takes over from all who let it go before.
IN_FRONT_OF(bool, derefT, "_ZNK20QFutureInterfaceBase6derefTEv", void *self) {
    REAL(derefT, "_ZNK20QFutureInterfaceBase6derefTEv");
    __tsan_release(stateOf(self));
    const Acquiring acquiring{stateOf(self)};
    return real(self);
}

IN_FRONT_OF(void, releaseSemaphore, "_ZN10QSemaphore7releaseEi", void *self, int count) {
    REAL(releaseSemaphore, "_ZN10QSemaphore7releaseEi");
    __tsan_release(self);
    real(self, count);
}
IN_FRONT_OF(void, acquireSemaphore, "_ZN10QSemaphore7acquireEi", void *self, int count) {
    REAL(acquireSemaphore, "_ZN10QSemaphore7acquireEi");
    const Acquiring acquiring{self};
    real(self, count);
}
IN_FRONT_OF(bool, tryAcquireSemaphore, "_ZN10QSemaphore10tryAcquireEi", void *self, int count) {
    REAL(tryAcquireSemaphore, "_ZN10QSemaphore10tryAcquireEi");
    const Acquiring acquiring{self};
    return real(self, count);
}
IN_FRONT_OF(bool, tryAcquireSemaphoreFor, "_ZN10QSemaphore10tryAcquireEii", void *self, int count, int milliseconds) {
    REAL(tryAcquireSemaphoreFor, "_ZN10QSemaphore10tryAcquireEii");
    const Acquiring acquiring{self};
    return real(self, count, milliseconds);
}

// Its only member points to the exception, which goes with the last of those that do.
IN_FRONT_OF(void, releaseException, "_ZNSt15__exception_ptr13exception_ptr10_M_releaseEv", void *self) {
    REAL(releaseException, "_ZNSt15__exception_ptr13exception_ptr10_M_releaseEv");
    if (void *const exception = *static_cast<void **>(self)) {
        __tsan_release(exception);
        __tsan_acquire(exception);
    }
    real(self);
}
