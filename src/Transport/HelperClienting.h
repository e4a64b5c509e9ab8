#pragma once

#include "Support/AsyncStream.h"
#include "Transport/HelperEvent.h"
#include "Transport/HelperProtocolCatalogue.h"
#include "Transport/HelperProtocolEnvelope.h"
#include "Transport/JSONReader.h"

#include <QCoroTask>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

namespace zelk {

using EventReader = AsyncStream<HelperEvent>::Reader;

/// How everything in the application reaches the engine. All calls may come from any executor's thread and resume on
/// it. A failure is thrown as `HelperError`; a cancelled call throws `Cancelled`. A request is queued at the call,
/// before the first suspension: the order of calls is the order of lines. It is owned by shared pointers, and a call
/// under way keeps nobody from its release, which fails what is open with `HelperError::helperUnavailable`.
class HelperClienting : public std::enable_shared_from_this<HelperClienting> {
public:
    static constexpr std::chrono::seconds standardTimeout{15};

    virtual ~HelperClienting() = default;

    /// What the engine says unprompted, and how it fares. There is one reader. Holding it keeps no client alive.
    virtual EventReader events() const = 0;

    /// Sends `request` and reads its result as `T`, for which a reader must exist (see JSONReader.h). `EmptyResult`
    /// takes any result.
    template<typename T>
    QCoro::Task<T> request(Request request, std::chrono::nanoseconds timeout = standardTimeout,
                           std::stop_token stop = {}) {
        // Written on the implementation's thread, read here once that has said that it is done.
        const auto result = std::make_shared<std::optional<T>>();
        ReadResult read = [result](const std::optional<JSONValue> &value) { *result = readResult<T>(value); };
        auto answered = perform(std::move(request), std::move(read), jsonTypeName<T>(), timeout, std::move(stop));
        co_await answered;
        co_return std::move(**result);
    }

    /// Sends `request` and throws its result away.
    QCoro::Task<> send(Request request, std::chrono::nanoseconds timeout = standardTimeout, std::stop_token stop = {});

    /// Writes `request` and waits for no reply.
    virtual QCoro::Task<> notify(Request request) = 0;

    /// The tracks of one playlist. An engine may answer with the wrapped or with the bare list: on any failure of the
    /// first way the request is sent once more and read the second way, so that a silent engine costs twice the
    /// time-out.
    QCoro::Task<std::vector<PreviewTrackDTO>> getPlaylistTracks(PlaylistSourceId source, QString id,
                                                                std::optional<QString> name, std::stop_token stop = {});

protected:
    /// Turns a result into what the caller asked for, on the implementation's executor; throws `JSONError` if it
    /// doesn't fit.
    using ReadResult = std::function<void(const std::optional<JSONValue> &)>;

    /// Sends `request` and hands its result, if it has one, to `read`. `typeName` is the simple name of what is
    /// being read, for the description of a failure.
    virtual QCoro::Task<> perform(Request request, ReadResult read, QString typeName, std::chrono::nanoseconds timeout,
                                  std::stop_token stop) = 0;
};

} // namespace zelk
