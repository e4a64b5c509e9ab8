#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <optional>

namespace zelk {

// Turns chunks of bytes, however they are cut, into whole lines. It knows nothing of what is in a line. A line ends in
// a line feed, which isn't part of it, nor is one carriage return before it; empty lines vanish. A plain value without
// a lock: one thread's.
class NDJSONFramer {
public:
    // How many bytes may be read, whatever they hold, past the end of a line that a sink is given.
    static constexpr qsizetype padding = 64;

    // Appends the chunk and returns the lines that are complete now, oldest first.
    QList<QByteArray> feed(QByteArrayView chunk);

    // The same without a copy of each line: calls sink(QByteArrayView line) where the line lies in the buffer, with
    // `padding` readable bytes behind it. The view is good until the sink returns, and the sink doesn't touch the
    // framer.
    template<class Sink>
    void feed(QByteArrayView chunk, Sink &&sink) {
        append(chunk);
        while (const std::optional<QByteArrayView> line = nextLine())
            sink(*line);
        release();
    }

    // Gives up what remains as a last line; no value when nothing does. The buffer is then empty.
    std::optional<QByteArray> flush();

    // What has been fed and not yet handed out.
    QByteArrayView buffer() const { return QByteArrayView(_bytes).sliced(_start, _end - _start); }

private:
    void append(QByteArrayView chunk);
    std::optional<QByteArrayView> nextLine(); // the next complete line that isn't empty, and the buffer moves past it
    void release();

    QByteArray _bytes;      // its size is the capacity, always `padding` above _end
    qsizetype _start = 0;   // first byte not handed out
    qsizetype _scanned = 0; // no line feed between _start and here: a long line is searched once, not at every chunk
    qsizetype _end = 0;
};

} // namespace zelk
