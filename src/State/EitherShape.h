#pragma once

#include "Support/Cancelled.h"
#include "Transport/HelperClienting.h"

#include <memory>

namespace zelk {

/// Asks for a list or a record that engines give in one of two shapes: wrapped in a record of its own, or bare. The
/// wrapped one is tried first; on any failure of that, a silent engine's too, the request is sent once more and read
/// the bare way. Throws what the second try throws.
template<typename Wrapped, typename Bare>
QCoro::Task<Bare> requestInEitherShape(std::shared_ptr<HelperClienting> client, Request request, Bare Wrapped::*payload,
                                       std::stop_token stop) {
    try {
        auto asking = client->request<Wrapped>(request, HelperClienting::standardTimeout, stop);
        auto wrapped = co_await asking;
        co_return std::move(wrapped.*payload);
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &) {
        // Whatever it was: the second try tells.
    }
    auto asking = client->request<Bare>(request, HelperClienting::standardTimeout, stop);
    auto bare = co_await asking;
    co_return std::move(bare);
}

} // namespace zelk
