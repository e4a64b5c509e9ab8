#include "Transport/HelperProtocolEnvelope.h"

#include "Transport/JSONLineNode.h"

#include <utility>

namespace zelk {

QString WireProtocol::trackId(const QString &playlistId, qint64 row) {
    return playlistId + QLatin1Char('#') + QString::number(row);
}

Request Request::getConfig() {
    return {GetConfig{}};
}
Request Request::setConfig(ConfigPatch patch) {
    return {SetConfig{std::move(patch)}};
}
Request Request::storeAccountToken(AccountService service, QString token, std::optional<QString> clientId) {
    return {StoreAccountToken{service, std::move(token), std::move(clientId)}};
}
Request Request::getSpotifyAuthParams() {
    return {GetSpotifyAuthParams{}};
}
Request Request::disconnectAccount(AccountService service) {
    return {DisconnectAccount{service}};
}
Request Request::connectSpotify() {
    return {ConnectSpotify{}};
}
Request Request::listPlaylists(std::optional<PlaylistSourceId> source) {
    return {ListPlaylists{source}};
}
Request Request::getPlaylistTracks(PlaylistSourceId source, QString id, std::optional<QString> name) {
    return {GetPlaylistTracks{source, std::move(id), std::move(name)}};
}
Request Request::startSync(std::vector<PlaylistSelection> selection, std::optional<SyncOptions> options) {
    return {StartSync{std::move(selection), options}};
}
Request Request::cancelSync(std::optional<QString> runId) {
    return {CancelSync{std::move(runId)}};
}
Request Request::reviewDecision(std::optional<QString> runId, QString trackId, zelk::ReviewDecision decision) {
    return {ReviewDecision{std::move(runId), std::move(trackId), std::move(decision)}};
}
Request Request::listOrphans(std::vector<PlaylistSelection> selection) {
    return {ListOrphans{std::move(selection)}};
}
Request Request::trashOrphans(QStringList paths) {
    return {TrashOrphans{std::move(paths)}};
}
Request Request::runDoctor() {
    return {RunDoctor{}};
}
Request Request::doctorFix(QString checkId) {
    return {DoctorFix{std::move(checkId)}};
}
Request Request::provisionTools() {
    return {ProvisionTools{}};
}
Request Request::testProxy() {
    return {TestProxy{}};
}
Request Request::proxyInfo() {
    return {ProxyInfo{}};
}

Method Request::method() const {
    return std::visit([]<class Case>(const Case &) { return Case::method; }, value);
}

namespace {

template<class Member>
constexpr bool isGiven(const Member &member) {
    if constexpr (isJSONOptional<Member>)
        return member.has_value();
    else
        return true;
}

// "params" is there as soon as there is anything to say in it: never an empty object.
template<class Case>
bool hasParams(const Case &request) {
    return std::apply([&](const auto &...field) { return (isGiven(request.*field.member) || ...); },
                      jsonFields(static_cast<const Case *>(nullptr)));
}

void writeEnvelope(JSONWriter &writer, const QString &id, const Request &request) {
    writer.beginObject();
    writer.key(QLatin1StringView("id"));
    writer.string(QStringView(id));
    writer.key(QLatin1StringView("method"));
    writer.string(wireName(request.method()));
    std::visit(
        [&](const auto &arguments) {
            if (hasParams(arguments)) {
                writer.key(QLatin1StringView("params"));
                writeNode(writer, arguments);
            }
        },
        request.value);
    writer.endObject();
}

template<class Case>
constexpr bool hasFields = std::tuple_size_v<decltype(jsonFields(static_cast<const Case *>(nullptr)))> != 0;

template<class Case>
bool readArguments(const LineNode &params, std::optional<Request> &out, JSONFailure &failure) {
    Case arguments;
    // Without "params" every argument is absent, which only the required ones mind.
    if (params.isAbsent() || params.isNull()) {
        if (hasParams(arguments))
            return failure.missing(QLatin1StringView("params"));
    } else if (hasFields<Case> && !readNode(params, arguments, failure)) {
        return failure.under(QLatin1StringView("params"));
    }
    out = Request{std::move(arguments)};
    return true;
}

template<std::size_t... cases>
bool readRequest(Method method, const LineNode &params, std::optional<Request> &out, JSONFailure &failure,
                 std::index_sequence<cases...>) {
    bool fits = false;
    const auto tryCase = [&]<class Case>() {
        if (Case::method != method)
            return false;
        fits = readArguments<Case>(params, out, failure);
        return true;
    };
    (void)(tryCase.template operator()<std::variant_alternative_t<cases, Request::Value>>() || ...);
    return fits;
}

} // namespace

QByteArray Request::encodedLine(const QString &id) const {
    JSONWriter writer;
    writeEnvelope(writer, id, *this);
    return writer.take();
}

void writeWire(JSONWriter &writer, const RequestEnvelope &envelope) {
    writeEnvelope(writer, envelope.id, envelope.request);
}

std::variant<RequestEnvelope, RequestRefusal> readRequestLine(QByteArrayView line) {
    const auto refusal = [](std::optional<QString> id, EngineErrorCode code, QString message) {
        return RequestRefusal{std::move(id), code, std::move(message)};
    };
    LineParser parser;
    JSONFailure failure;
    const LineNode root = parser.parseCopy(line, failure);
    if (root.isAbsent())
        return refusal({}, EngineErrorCode::badRequest, failure.description());
    if (!root.isObject())
        return refusal({}, EngineErrorCode::badRequest, QStringLiteral("A request is a JSON object."));
    auto members = root.members();
    QString id;
    if (!readMember(members, QLatin1StringView("id"), id, failure))
        return refusal({}, EngineErrorCode::badRequest, failure.description());
    QString name;
    if (!readMember(members, QLatin1StringView("method"), name, failure))
        return refusal(id, EngineErrorCode::badRequest, failure.description());
    const std::optional<Method> method = fromWireName<Method>(name);
    if (!method)
        return refusal(id, EngineErrorCode::unknownMethod, QStringLiteral("Unknown method: ") + name);
    std::optional<Request> request;
    if (!readRequest(*method, members.find(QLatin1StringView("params")), request, failure,
                     std::make_index_sequence<std::variant_size_v<Request::Value>>()))
        return refusal(id, EngineErrorCode::invalidParams, failure.description());
    return RequestEnvelope{id, *std::move(request)};
}

QByteArray encodedReply(const QString &id) {
    return writeJSON(Response{id, true, {}, {}});
}

QByteArray encodedFailure(const QString &id, EngineErrorCode code, const QString &message) {
    return writeJSON(Response{id, false, {}, Response::EngineErrorPayload{QString(wireName(code)), message, {}}});
}

} // namespace zelk
