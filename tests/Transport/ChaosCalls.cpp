// The calls on the client, and how they end.
#include "ChaosHistory.h"

#include "Support/Task.h"
#include "Transport/HelperError.h"

namespace zelk::chaos {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// How a failure is called in the model.
QString wordOf(const std::exception_ptr &failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const Cancelled &) {
        return u"cancelled"_s;
    } catch (const HelperError &error) {
        if (error == HelperError::helperCrashed())
            return u"crashed"_s;
        if (error == HelperError::helperUnavailable())
            return u"unavailable"_s;
        if (error == HelperError::requestTimedOut())
            return u"timed out"_s;
        if (error == HelperError::decodeFailure(u"ok:false with no error payload"_s))
            return u"no word"_s;
        if (const auto *engine = std::get_if<HelperError::EngineError>(&error.value))
            return u"engine %1 %2"_s.arg(engine->code, engine->message);
        if (error.errorDescription().contains(u"result did not match "_s))
            return u"misfit"_s;
        return error.errorDescription();
    } catch (...) {
        return u"something else"_s;
    }
}

QString wordOf(const std::vector<PreviewTrackDTO> &tracks) {
    return u"value "_s + tracks.at(0).title;
}

QCoro::Task<QString> ask(std::shared_ptr<HelperClient> client, CallKind kind, QString tag, Clock::Duration timeout,
                         std::stop_token stop) {
    // The client is not held: its release comes when it comes.
    HelperClient *const here = client.get();
    const Request request = Request::getPlaylistTracks(PlaylistSourceId::apple, tag);
    if (kind == CallKind::Tracks) {
        auto asking = here->request<PreviewTracksResult>(request, timeout, stop);
        client.reset();
        const auto result = co_await asking;
        co_return wordOf(result.tracks);
    }
    if (kind == CallKind::EitherShape) {
        auto asking = here->getPlaylistTracks(PlaylistSourceId::apple, tag, std::nullopt, stop);
        client.reset();
        const auto tracks = co_await asking;
        co_return wordOf(tracks);
    }
    auto asking = kind == CallKind::Empty ? here->send(request, timeout, stop) : here->notify(request);
    client.reset();
    co_await asking;
    co_return u"done"_s;
}

QCoro::Task<QString> done(QCoro::Task<> task) {
    co_await task;
    co_return u"done"_s;
}

} // namespace

void History::follow(QObject *owner, const std::shared_ptr<Ending> &ending, QCoro::Task<QString> task) {
    const auto held = std::make_shared<QCoro::Task<QString>>(std::move(task));
    startTask(owner, [ending, held](std::stop_token) -> QCoro::Task<> {
        try {
            ending->word = co_await *held;
        } catch (...) {
            ending->word = wordOf(std::current_exception());
        }
        ++ending->times;
    });
}

std::shared_ptr<History::Ending> History::follow(QCoro::Task<> task) {
    const auto ending = std::make_shared<Ending>();
    follow(this, ending, done(std::move(task)));
    return ending;
}

void History::call(int count, bool isFromElsewhere) {
    for (int i = 0; i < count; ++i) {
        const auto kind = static_cast<CallKind>(_chance.below(4));
        QString tag = u"t%1."_s.arg(++_made);
        // Longer than what the pipe holds.
        if (_chance.oneIn(_mood == Mood::Deaf ? 4 : 30))
            tag += QString(5000 + _chance.below(20000), u'x');
        const Clock::Duration timeout = kind == CallKind::EitherShape ? 15s : _chance.oneIn(5) ? 300s : 15s;
        const bool here = !isFromElsewhere || _chance.oneIn(2);
        did(u"call "_s +
                std::array{u"tracks"_s, u"empty"_s, u"either shape"_s, u"notice"_s}[static_cast<std::size_t>(kind)],
            tag + (here ? u""_s : u" from elsewhere"_s));
        const auto call = _model.call(kind, tag, timeout);
        makeCall(call, timeout, !here, _stops[call.get()].get_token());
    }
}

void History::makeCall(const CallRef &call, Clock::Duration timeout, bool isFromElsewhere, std::stop_token stop) {
    const auto ending = std::make_shared<Ending>();
    _endings[call.get()] = ending;
    const auto make = [ending, timeout, stop, client = _client, kind = call->kind, tag = call->tag, owner = this] {
        follow(owner, ending, ask(client, kind, tag, timeout, stop));
    };
    if (isFromElsewhere)
        _elsewhere->post(make);
    else
        make();
}

} // namespace zelk::chaos
