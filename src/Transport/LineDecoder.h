#pragma once

#include "Transport/HelperProtocolEnvelope.h"
#include "Transport/ServerEvent.h"

#include <QByteArrayView>

#include <memory>
#include <optional>
#include <utility>

namespace zelk {

// Reads the engine's lines, one at a time and each with one parse, straight from where a line lies into the record. One
// client's, on one thread: it keeps the parser and its memory from line to line.
//
//     if (!decoder.route(line, isPending, onReply, onEvent))
//         log the line; decoder.failure() says what is wrong with it
//
// What no JSON parser should take is no line at all: a byte-order mark, a raw control character in a text, a lone
// surrogate, bytes that aren't UTF-8. A number too large for 64 bits is read as a float. Of two equal keys the first is
// taken.
class LineDecoder {
public:
    // How many bytes must be readable, whatever they hold, behind a line.
    static constexpr qsizetype padding = 64;

    LineDecoder();
    ~LineDecoder();
    LineDecoder(LineDecoder &&) noexcept;
    LineDecoder &operator=(LineDecoder &&) noexcept;

    // Takes a line to where it belongs: to onReply(Response) when it is a reply and isPending(id) says that its request
    // waits, else to onEvent(ServerEvent) when it is an event. False when it is neither. As parse(), for the buffer.
    template<class IsPending, class OnReply, class OnEvent>
    bool route(QByteArrayView line, IsPending isPending, OnReply onReply, OnEvent onEvent) {
        if (!parse(line))
            return false;
        if (auto reply = response(); reply && isPending(reply->id)) {
            onReply(std::move(*reply));
            return true;
        }
        auto said = event();
        if (said)
            onEvent(std::move(*said));
        return said.has_value();
    }

    // Parses a line, of which nothing is needed after the call. The buffer must go on for `padding` bytes behind the
    // line. False when it isn't a JSON object: then there is neither a response nor an event in it.
    bool parse(QByteArrayView line);

    // The parsed line as a reply, if it is one: `id` and `ok` of the right types, and an `error` of the right shape or
    // none.
    std::optional<Response> response();
    // The parsed line as an event, if it is one. An event name that isn't known gives ServerEvent::Unknown.
    std::optional<ServerEvent> event();
    // Why parse() or event() came to nothing for this line: "data.phase: unknown value: dancing".
    QString failure() const;

private:
    struct State;
    std::unique_ptr<State> _state;
};

} // namespace zelk
