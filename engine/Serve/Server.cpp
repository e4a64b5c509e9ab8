#include "Serve/Server.h"

#include "Transport/Tagged.h"

#include <type_traits>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// So many requests may be waiting for disks at once; the others line up.
constexpr int slowRequests = 4;

} // namespace

Server::Server(Engine &engine, LineWriter &out) : _engine(engine), _out(out), _slow(slowRequests) {}

Server::~Server() {
    _slow.waitUntilIdle();
}

void Server::refuse(const QString &id, EngineErrorCode code, const QString &message) {
    _out.writeLine(encodedFailure(id, code, message));
}

template<class Function>
void Server::answer(const QString &id, Function function) {
    try {
        if constexpr (std::is_void_v<decltype(function())>) {
            function();
            _out.writeLine(encodedReply(id));
        } else {
            _out.writeLine(encodedReply(id, function()));
        }
    } catch (const MethodError &error) {
        refuse(id, error.code(), error.message());
    } catch (const std::exception &error) {
        refuse(id, EngineErrorCode::internal,
               u"The engine failed: %1. Try again, and run the doctor if it stays."_s.arg(
                   QString::fromUtf8(error.what())));
    }
}

template<class Function>
void Server::answerLater(const QString &id, Function function) {
    _slow.post([this, id, function = std::move(function)] { answer(id, function); });
}

void Server::take(QByteArrayView line) {
    const auto read = readRequestLine(line);
    if (const auto *refusal = std::get_if<RequestRefusal>(&read)) {
        if (refusal->id) {
            refuse(*refusal->id, refusal->code, refusal->message);
        } else { // nobody waits for a reply, and there is no id to send it under
            _out.send(ServerEvent::Log{std::nullopt, ServerEvent::LogLevel::warn,
                                       u"A line that is no request was passed over: %1"_s.arg(refusal->message)});
        }
        return;
    }
    dispatch(std::get<RequestEnvelope>(read));
}

void Server::dispatch(const RequestEnvelope &envelope) {
    const QString &id = envelope.id;
    match(
        envelope.request,
        [&](const Request::GetConfig &) { answer(id, [&] { return ConfigResult{_engine.safeConfig()}; }); },
        [&](const Request::SetConfig &request) { answer(id, [&] { _engine.setConfig(request.patch); }); },
        [&](const Request::StoreAccountToken &request) {
            answer(id, [&] { _engine.storeAccountToken(request.service, request.token, request.clientId); });
        },
        [&](const Request::GetSpotifyAuthParams &) {
            refuse(id, EngineErrorCode::notImplemented,
                   u"This engine reads exported playlists and signs in nowhere."_s);
        },
        [&](const Request::DisconnectAccount &request) {
            answer(id, [&] { _engine.disconnectAccount(request.service); });
        },
        [&](const Request::ConnectSpotify &) { answerLater(id, [this] { _engine.connectSpotify(); }); },
        [&](const Request::ListPlaylists &request) {
            const auto asked = std::chrono::steady_clock::now();
            answerLater(id, [this, source = request.source, asked] {
                const auto waited = std::chrono::steady_clock::now() - asked;
                return ListPlaylistsResult{
                    _engine.listPlaylists(source, std::chrono::duration_cast<std::chrono::milliseconds>(waited))};
            });
        },
        [&](const Request::GetPlaylistTracks &request) {
            answerLater(id, [this, request] {
                return PreviewTracksResult{_engine.playlistTracks(request.source, request.id)};
            });
        },
        [&](const Request::StartSync &request) {
            try {
                _engine.startSync(request.selection, request.options, [&] { _out.writeLine(encodedReply(id)); });
            } catch (const MethodError &error) {
                refuse(id, error.code(), error.message());
            }
        },
        [&](const Request::CancelSync &request) { _engine.cancelSync(request.runId); },
        [&](const Request::ReviewDecision &request) {
            _engine.reviewDecision(request.trackId, request.decision, request.runId);
        },
        [&](const Request::ListOrphans &request) {
            answerLater(
                id, [this, selection = request.selection] { return OrphansResult{_engine.listOrphans(selection)}; });
        },
        [&](const Request::TrashOrphans &request) {
            answerLater(id, [this, paths = request.paths] { _engine.trashOrphans(paths); });
        },
        [&](const Request::RunDoctor &) { answerLater(id, [this] { return DoctorResult{_engine.runDoctor()}; }); },
        [&](const Request::DoctorFix &request) {
            answerLater(id, [this, check = request.checkId] { _engine.doctorFix(check); });
        },
        [&](const Request::ProvisionTools &) { answerLater(id, [this] { return _engine.provisionTools(); }); },
        [&](const Request::TestProxy &) {
            answer(id, [] { return TestProxyResult{false, u"This engine has no tunnel. It searches no network."_s}; });
        },
        [&](const Request::ProxyInfo &) { answer(id, [] {
                                              return ProxyInfoResult{false, 0};
                                          }); });
}

} // namespace zelk::engine
