#include "Support/Clock.h"

#include "Support/Cancelled.h"
#include "Support/OneShot.h"

#include <QCoroFuture>

namespace zelk {

QCoro::Task<> Clock::sleep(Duration duration, std::stop_token stop) {
    const auto cancelled = std::make_exception_ptr(Cancelled());
    const auto end = std::make_shared<OneShot<void>>(cancelled);
    const auto future = end->future();
    const auto alarm = after(duration, [end] { end->fulfil(); });
    const std::stop_callback onStop(stop, [end, cancelled] { end->fail(cancelled); });
    co_await future;
    // The ring and the request to stop may both come before this thread's turn; who was told to stop has stopped.
    if (stop.stop_requested())
        throw Cancelled();
}

} // namespace zelk
