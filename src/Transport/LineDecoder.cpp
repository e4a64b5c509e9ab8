#include "Transport/LineDecoder.h"

#include "Transport/JSONLineNode.h"

#include <utility>

namespace zelk {

static_assert(LineDecoder::padding >= simdjson::SIMDJSON_PADDING);

struct LineDecoder::State {
    LineParser parser;
    LineNode root;
    JSONFailure failure;
};

LineDecoder::LineDecoder() : _state(std::make_unique<State>()) {}
LineDecoder::~LineDecoder() = default;
LineDecoder::LineDecoder(LineDecoder &&) noexcept = default;
LineDecoder &LineDecoder::operator=(LineDecoder &&) noexcept = default;

bool LineDecoder::parse(QByteArrayView line) {
    _state->root = _state->parser.parse(line, _state->failure);
    if (_state->root.isAbsent())
        return false;
    if (!_state->root.isObject()) {
        _state->failure.expected(QLatin1StringView("an object"), _state->root.kind());
        _state->root = {};
        return false;
    }
    return true;
}

std::optional<Response> LineDecoder::response() {
    std::optional<Response> response;
    if (_state->root.isAbsent())
        return response;
    // Nearly every line is an event: that it has no id is all there is to find out about it.
    if (!_state->root.members().contains(QLatin1StringView("id")))
        return response;
    if (!readNode(_state->root, response.emplace(), _state->failure))
        response.reset();
    return response;
}

namespace {

struct EventParts {
    LineNode correlationId;
    LineNode data;
};

// False, with the failure noted, when the event is of this case but its data doesn't fit.
template<class Case>
bool readCase(const EventParts &parts, Case &event, JSONFailure &failure) {
    if constexpr (requires { event.correlationId; }) {
        if (!parts.correlationId.isAbsent() && !parts.correlationId.isNull()) {
            if constexpr (isJSONOptional<decltype(event.correlationId)>)
                parts.correlationId.readShared(event.correlationId.emplace());
            else
                parts.correlationId.readShared(event.correlationId);
        }
    }
    if (parts.data.isAbsent())
        return failure.missing(QLatin1StringView("data"));
    return detail::readRecord(parts.data, event, failure) || failure.under(QLatin1StringView("data"));
}

template<std::size_t... cases>
void readEvent(std::string_view name, const EventParts &parts, std::optional<ServerEvent> &out, JSONFailure &failure,
               std::index_sequence<cases...>) {
    const auto tryCase = [&]<class Case>() {
        if constexpr (std::is_same_v<Case, ServerEvent::Unknown>) {
            auto raw = parts.data.isAbsent() ? JSONValue() : parts.data.toValue();
            out.emplace(ServerEvent::Unknown{textOfValidUtf8(name), std::move(raw)});
            return true;
        } else {
            if (!detail::sameText(name, Case::eventName))
                return false;
            out.emplace(std::in_place_type<Case>);
            if (!readCase(parts, *std::get_if<Case>(&out->value), failure))
                out.reset();
            return true;
        }
    };
    // In the order of the cases, of which Unknown is the last and takes what is left.
    (void)(tryCase.template operator()<std::variant_alternative_t<cases, ServerEvent::Value>>() || ...);
}

} // namespace

std::optional<ServerEvent> LineDecoder::event() {
    std::optional<ServerEvent> event;
    if (_state->root.isAbsent())
        return event;
    JSONFailure &failure = _state->failure;
    auto members = _state->root.members();
    const LineNode name = members.find(QLatin1StringView("event"));
    std::string_view nameText;
    if (name.isAbsent()) {
        failure.missing(QLatin1StringView("event"));
        return event;
    }
    if (!name.text(nameText)) {
        failure.expected(QLatin1StringView("text"), name.kind());
        failure.under(QLatin1StringView("event"));
        return event;
    }
    EventParts parts;
    parts.correlationId = members.find(QLatin1StringView("correlationId"));
    std::string_view correlationText;
    if (!parts.correlationId.isAbsent() && !parts.correlationId.isNull() &&
        !parts.correlationId.text(correlationText)) {
        failure.expected(QLatin1StringView("text"), parts.correlationId.kind());
        failure.under(QLatin1StringView("correlationId"));
        return event;
    }
    parts.data = members.find(QLatin1StringView("data"));
    readEvent(nameText, parts, event, failure, std::make_index_sequence<std::variant_size_v<ServerEvent::Value>>());
    return event;
}

QString LineDecoder::failure() const {
    return _state->failure.description();
}

} // namespace zelk
