#include "Transport/HelperClienting.h"

#include "Transport/HelperError.h"

namespace zelk {

QCoro::Task<> HelperClienting::send(Request request, std::chrono::nanoseconds timeout, std::stop_token stop) {
    auto answered = this->request<EmptyResult>(std::move(request), timeout, std::move(stop));
    co_await answered;
}

QCoro::Task<std::vector<PreviewTrackDTO>> HelperClienting::getPlaylistTracks(PlaylistSourceId source, QString id,
                                                                             std::optional<QString> name,
                                                                             std::stop_token stop) {
    const auto weak = weak_from_this();
    const Request tracks = Request::getPlaylistTracks(source, std::move(id), std::move(name));
    try {
        auto wrapped = request<PreviewTracksResult>(tracks, standardTimeout, stop);
        auto result = co_await wrapped;
        co_return std::move(result.tracks);
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &) {
        // Whatever it was: the engine may answer the other way, or may have come back.
    }
    auto self = weak.lock();
    if (!self)
        throw HelperError::helperUnavailable();
    auto bare = self->request<std::vector<PreviewTrackDTO>>(tracks, standardTimeout, std::move(stop));
    self.reset();
    auto result = co_await bare;
    co_return std::move(result);
}

} // namespace zelk
