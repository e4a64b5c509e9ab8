// What the client does with the engine's output: chunks, lines, and each line either the reply to a request that waits,
// or an event, or nothing that it knows. The input is the output; its last byte also says how it is cut.
#include "Fuzzing.h"

#include "Transport/LineDecoder.h"
#include "Transport/NDJSONFramer.h"

namespace zelk::fuzz {

namespace {

struct Outcome {
    std::optional<Response> response;
    std::optional<ServerEvent> event;
    QString failure;
    bool operator==(const Outcome &) const = default;
};

bool isAwaited(const QString &id) {
    return id == QLatin1StringView("r1") || id == QLatin1StringView("r2");
}

Outcome routed(LineDecoder &decoder, QByteArrayView line) {
    Outcome outcome;
    const bool known = decoder.route(
        line, isAwaited, [&](Response response) { outcome.response = std::move(response); },
        [&](ServerEvent event) { outcome.event = std::move(event); });
    holds(known == (outcome.response || outcome.event), "a line is dropped exactly when it is nothing");
    holds(!(outcome.response && outcome.event), "a line isn't a reply and an event");
    if (!known)
        outcome.failure = decoder.failure();
    return outcome;
}

/// By a decoder that has seen nothing yet, from a place where other bytes follow.
Outcome routedAlone(QByteArrayView line) {
    LineDecoder decoder;
    const QByteArray padded = line.toByteArray() + QByteArray(LineDecoder::padding, '"');
    return routed(decoder, QByteArrayView(padded).first(line.size()));
}

void checkReply(const Response &response) {
    holds(isAwaited(response.id), "only a reply that is awaited is one");
    const QByteArray line = writeJSON(response);
    holds(!line.contains('\n'), "a reply is one line");
    holds(routedAlone(line).response == response, "a reply that is written reads back the same");
}

void checkEvent(const ServerEvent &event) {
    const QByteArray line = event.encodedLine();
    holds(!line.contains('\n'), "an event is one line");
    const auto again = routedAlone(line);
    holds(again.event == event, "an event that is written reads back the same");
    holds(again.event->encodedLine() == line, "an event is always written in one way");
}

} // namespace

void fuzz(QByteArrayView input) {
    const qsizetype chunk = input.isEmpty() ? 1 : 1 + static_cast<quint8>(input.back()) * 7;
    NDJSONFramer framer;
    LineDecoder decoder;
    for (qsizetype at = 0; at < input.size(); at += chunk) {
        framer.feed(input.sliced(at, std::min(chunk, input.size() - at)), [&](QByteArrayView line) {
            const auto outcome = routed(decoder, line);
            holds(outcome == routedAlone(line), "a line means the same whatever was before and behind it");
            if (outcome.response)
                checkReply(*outcome.response);
            else if (outcome.event)
                checkEvent(*outcome.event);
            else
                holds(!outcome.failure.isEmpty(), "what is dropped has a reason");
        });
    }
}

} // namespace zelk::fuzz
