#pragma once

#include "Transport/HelperError.h"
#include "Transport/HelperProtocolCatalogue.h"
#include "Transport/HelperProtocolConfig.h"
#include "Transport/HelperProtocolResults.h"

// The outer shape of what crosses the pipe: requests to the engine and its replies. Each is one JSON object on one
// line. Events are in ServerEvent.h.
namespace zelk {

namespace WireProtocol {

// A track's id inside a playlist, as the engine forms it: "p1#3".
QString trackId(const QString &playlistId, qint64 row);

} // namespace WireProtocol

enum class Method : quint8 {
    getConfig,
    setConfig,
    storeAccountToken,
    getSpotifyAuthParams,
    disconnectAccount,
    connectSpotify,
    listPlaylists,
    getPlaylistTracks,
    startSync,
    cancelSync,
    reviewDecision,
    listOrphans,
    trashOrphans,
    runDoctor,
    doctorFix,
    provisionTools,
    testProxy,
    proxyInfo,
};

constexpr QLatin1StringView wireName(Method method) {
    switch (method) {
    case Method::getConfig:
        return QLatin1StringView("getConfig");
    case Method::setConfig:
        return QLatin1StringView("setConfig");
    case Method::storeAccountToken:
        return QLatin1StringView("storeAccountToken");
    case Method::getSpotifyAuthParams:
        return QLatin1StringView("getSpotifyAuthParams");
    case Method::disconnectAccount:
        return QLatin1StringView("disconnectAccount");
    case Method::connectSpotify:
        return QLatin1StringView("connectSpotify");
    case Method::listPlaylists:
        return QLatin1StringView("listPlaylists");
    case Method::getPlaylistTracks:
        return QLatin1StringView("getPlaylistTracks");
    case Method::startSync:
        return QLatin1StringView("startSync");
    case Method::cancelSync:
        return QLatin1StringView("cancelSync");
    case Method::reviewDecision:
        return QLatin1StringView("reviewDecision");
    case Method::listOrphans:
        return QLatin1StringView("listOrphans");
    case Method::trashOrphans:
        return QLatin1StringView("trashOrphans");
    case Method::runDoctor:
        return QLatin1StringView("runDoctor");
    case Method::doctorFix:
        return QLatin1StringView("doctorFix");
    case Method::provisionTools:
        return QLatin1StringView("provisionTools");
    case Method::testProxy:
        return QLatin1StringView("testProxy");
    case Method::proxyInfo:
        return QLatin1StringView("proxyInfo");
    }
    return {};
}

// One case per method, holding exactly its arguments; a case's fields are the keys of its "params". "params" is left
// out where a method has no arguments, or only optional ones and none of them is given.
//
// Make one with the function of its name, Request::listPlaylists(source): unlike a braced Request::ListPlaylists{…},
// that is safe inside a co_await expression under g++ 12.
struct Request {
    template<Method name>
    struct Case {
        static constexpr Method method = name;
        bool operator==(const Case &) const = default;
    };
    struct GetConfig {
        static constexpr Method method = Method::getConfig;
        bool operator==(const GetConfig &) const = default;
    };
    struct SetConfig {
        static constexpr Method method = Method::setConfig;
        ConfigPatch patch;
        bool operator==(const SetConfig &) const = default;
    };
    struct StoreAccountToken {
        static constexpr Method method = Method::storeAccountToken;
        AccountService service{};
        QString token;
        std::optional<QString> clientId;
        bool operator==(const StoreAccountToken &) const = default;
    };
    struct GetSpotifyAuthParams {
        static constexpr Method method = Method::getSpotifyAuthParams;
        bool operator==(const GetSpotifyAuthParams &) const = default;
    };
    struct DisconnectAccount {
        static constexpr Method method = Method::disconnectAccount;
        AccountService service{};
        bool operator==(const DisconnectAccount &) const = default;
    };
    struct ConnectSpotify {
        static constexpr Method method = Method::connectSpotify;
        bool operator==(const ConnectSpotify &) const = default;
    };
    struct ListPlaylists {
        static constexpr Method method = Method::listPlaylists;
        std::optional<PlaylistSourceId> source;
        bool operator==(const ListPlaylists &) const = default;
    };
    struct GetPlaylistTracks {
        static constexpr Method method = Method::getPlaylistTracks;
        PlaylistSourceId source{};
        QString id;
        std::optional<QString> name;
        bool operator==(const GetPlaylistTracks &) const = default;
    };
    struct StartSync {
        static constexpr Method method = Method::startSync;
        std::vector<PlaylistSelection> selection;
        std::optional<SyncOptions> options;
        bool operator==(const StartSync &) const = default;
    };
    struct CancelSync {
        static constexpr Method method = Method::cancelSync;
        std::optional<QString> runId;
        bool operator==(const CancelSync &) const = default;
    };
    struct ReviewDecision {
        static constexpr Method method = Method::reviewDecision;
        std::optional<QString> runId;
        QString trackId;
        zelk::ReviewDecision decision;
        bool operator==(const ReviewDecision &) const = default;
    };
    struct ListOrphans {
        static constexpr Method method = Method::listOrphans;
        std::vector<PlaylistSelection> selection;
        bool operator==(const ListOrphans &) const = default;
    };
    struct TrashOrphans {
        static constexpr Method method = Method::trashOrphans;
        QStringList paths;
        bool operator==(const TrashOrphans &) const = default;
    };
    struct RunDoctor {
        static constexpr Method method = Method::runDoctor;
        bool operator==(const RunDoctor &) const = default;
    };
    struct DoctorFix {
        static constexpr Method method = Method::doctorFix;
        QString checkId;
        bool operator==(const DoctorFix &) const = default;
    };
    struct ProvisionTools {
        static constexpr Method method = Method::provisionTools;
        bool operator==(const ProvisionTools &) const = default;
    };
    struct TestProxy {
        static constexpr Method method = Method::testProxy;
        bool operator==(const TestProxy &) const = default;
    };
    struct ProxyInfo {
        static constexpr Method method = Method::proxyInfo;
        bool operator==(const ProxyInfo &) const = default;
    };

    using Value = std::variant<GetConfig, SetConfig, StoreAccountToken, GetSpotifyAuthParams, DisconnectAccount,
                               ConnectSpotify, ListPlaylists, GetPlaylistTracks, StartSync, CancelSync, ReviewDecision,
                               ListOrphans, TrashOrphans, RunDoctor, DoctorFix, ProvisionTools, TestProxy, ProxyInfo>;

    static Request getConfig();
    static Request setConfig(ConfigPatch patch);
    static Request storeAccountToken(AccountService service, QString token, std::optional<QString> clientId = {});
    static Request getSpotifyAuthParams();
    static Request disconnectAccount(AccountService service);
    static Request connectSpotify();
    static Request listPlaylists(std::optional<PlaylistSourceId> source = {});
    static Request getPlaylistTracks(PlaylistSourceId source, QString id, std::optional<QString> name = {});
    static Request startSync(std::vector<PlaylistSelection> selection, std::optional<SyncOptions> options = {});
    static Request cancelSync(std::optional<QString> runId = {});
    static Request reviewDecision(std::optional<QString> runId, QString trackId, zelk::ReviewDecision decision);
    static Request listOrphans(std::vector<PlaylistSelection> selection);
    static Request trashOrphans(QStringList paths);
    static Request runDoctor();
    static Request doctorFix(QString checkId);
    static Request provisionTools();
    static Request testProxy();
    static Request proxyInfo();

    Method method() const;
    // The request's line under that id, without the line feed. Throws JSONError, and gives no line, if a number in it
    // is not finite.
    QByteArray encodedLine(const QString &id) const;

    Value value; // for match() and caseOf(), see Tagged.h
    bool operator==(const Request &) const = default;
};
ZELK_JSON_FIELDS(Request::GetConfig)
ZELK_JSON_FIELDS(Request::SetConfig, patch)
ZELK_JSON_FIELDS(Request::StoreAccountToken, service, token, clientId)
ZELK_JSON_FIELDS(Request::GetSpotifyAuthParams)
ZELK_JSON_FIELDS(Request::DisconnectAccount, service)
ZELK_JSON_FIELDS(Request::ConnectSpotify)
ZELK_JSON_FIELDS(Request::ListPlaylists, source)
ZELK_JSON_FIELDS(Request::GetPlaylistTracks, source, id, name)
ZELK_JSON_FIELDS(Request::StartSync, selection, options)
ZELK_JSON_FIELDS(Request::CancelSync, runId)
ZELK_JSON_FIELDS(Request::ReviewDecision, runId, trackId, decision)
ZELK_JSON_FIELDS(Request::ListOrphans, selection)
ZELK_JSON_FIELDS(Request::TrashOrphans, paths)
ZELK_JSON_FIELDS(Request::RunDoctor)
ZELK_JSON_FIELDS(Request::DoctorFix, checkId)
ZELK_JSON_FIELDS(Request::ProvisionTools)
ZELK_JSON_FIELDS(Request::TestProxy)
ZELK_JSON_FIELDS(Request::ProxyInfo)

// A request under the id that its reply will carry.
struct RequestEnvelope {
    QString id;
    Request request;
    bool operator==(const RequestEnvelope &) const = default;
};

void writeWire(JSONWriter &writer, const RequestEnvelope &envelope);

// The engine's end. A line that is no request says why, in the terms of the reply that it deserves.
struct RequestRefusal {
    std::optional<QString> id; // none when the line has no readable id: then nobody waits for a reply
    EngineErrorCode code{};    // badRequest, unknownMethod or invalidParams
    QString message;
    bool operator==(const RequestRefusal &) const = default;
};

std::variant<RequestEnvelope, RequestRefusal> readRequestLine(QByteArrayView line);

// A reply. With ok, `result`; without, `error`.
struct Response {
    struct EngineErrorPayload {
        QString code; // free text: EngineErrorCode is a typed view of it
        QString message;
        std::optional<JSONValue> data;
        bool operator==(const EngineErrorPayload &) const = default;
    };

    QString id;
    bool ok = false;
    std::optional<JSONValue> result; // absent and JSON null are both no value
    std::optional<EngineErrorPayload> error;
    bool operator==(const Response &) const = default;
};
ZELK_JSON_FIELDS(Response::EngineErrorPayload, code, message, data)
ZELK_JSON_FIELDS(Response, id, ok, result, error)

// The engine's replies as lines without the line feed: a success with nothing to say, one with a record, and a failure.
QByteArray encodedReply(const QString &id);
template<class Result>
QByteArray encodedReply(const QString &id, const Result &result) {
    JSONWriter writer;
    writer.beginObject();
    writer.key(QLatin1StringView("id"));
    writer.string(id);
    writer.key(QLatin1StringView("ok"));
    writer.boolean(true);
    writer.key(QLatin1StringView("result"));
    writeNode(writer, result);
    writer.endObject();
    return writer.take();
}
QByteArray encodedFailure(const QString &id, EngineErrorCode code, const QString &message);

} // namespace zelk
