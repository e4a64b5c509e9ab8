// Bytes in chunks become the same lines, however they are cut. The input's first byte says how many bytes of cuts
// follow and how large they are; what is behind these is the stream.
#include "Fuzzing.h"

#include "Transport/NDJSONFramer.h"

#include <algorithm>
#include <optional>

namespace zelk::fuzz {

namespace {

/// More than the framer keeps of an empty buffer.
constexpr qsizetype hugeLine = 1'100'000;

struct Plan {
    QByteArrayView cuts;
    qsizetype scale = 1;
    QByteArray stream;
    qsizetype atOnce = 0; // of the stream's beginning

    qsizetype chunkAt(qsizetype at, qsizetype number) const {
        const qsizetype left = stream.size() - at;
        if (at < atOnce)
            return atOnce - at;
        if (cuts.isEmpty())
            return left;
        return std::min(left, 1 + scale * static_cast<quint8>(cuts[number % cuts.size()]));
    }
};

Plan planOf(QByteArrayView input) {
    Plan plan;
    if (input.isEmpty())
        return plan;
    const auto head = static_cast<quint8>(input.front());
    input = input.sliced(1);
    plan.cuts = input.first(std::min<qsizetype>(head % 16, input.size()));
    plan.scale = head % 32 < 16 ? 1 : 300;
    input = input.sliced(plan.cuts.size());
    if (head >= 0xFC) {
        plan.stream = QByteArray(hugeLine, 'x');
        plan.atOnce = hugeLine;
    }
    plan.stream += input;
    return plan;
}

QByteArrayView withoutReturn(QByteArrayView line) {
    return line.endsWith('\r') ? line.chopped(1) : line;
}

/// The lines as anybody would split them who has the whole stream; what is behind the last line feed is left in it.
QList<QByteArray> splitOff(QByteArrayView &stream) {
    QList<QByteArray> lines;
    for (auto end = stream.indexOf('\n'); end >= 0; end = stream.indexOf('\n')) {
        if (const auto line = withoutReturn(stream.first(end)); !line.isEmpty())
            lines.append(line.toByteArray());
        stream = stream.sliced(end + 1);
    }
    return lines;
}

/// Reads what a parser may: all up to the end of the padding.
void touchPadding(QByteArrayView line) {
    volatile char seen = 0;
    for (qsizetype i = 0; i < NDJSONFramer::padding; ++i)
        seen = line.data()[line.size() + i];
    (void)seen;
}

} // namespace

void fuzz(QByteArrayView input) {
    const Plan plan = planOf(input);
    NDJSONFramer framer;
    std::optional<NDJSONFramer> copy;
    QList<QByteArray> lines;
    QList<QByteArray> linesOfCopy;
    qsizetype number = 0;
    qsizetype waitingFrom = 0;
    for (qsizetype at = 0; at < plan.stream.size(); ++number) {
        const auto chunk = QByteArrayView(plan.stream).sliced(at, plan.chunkAt(at, number));
        framer.feed(chunk, [&](QByteArrayView line) {
            touchPadding(line);
            lines.append(line.toByteArray());
        });
        if (copy)
            linesOfCopy += copy->feed(chunk);
        at += chunk.size();
        if (const auto lastEnd = chunk.lastIndexOf('\n'); lastEnd >= 0)
            waitingFrom = at - chunk.size() + lastEnd + 1;
        holds(framer.buffer() == QByteArrayView(plan.stream).sliced(waitingFrom, at - waitingFrom),
              "what waits is what came behind the last line feed");
        if (number == 1) {
            copy = framer;
            linesOfCopy = lines;
        }
    }
    QByteArrayView rest = plan.stream;
    holds(lines == splitOff(rest), "the lines don't depend on the chunks");
    if (copy)
        holds(linesOfCopy == lines && copy->buffer() == framer.buffer(), "a copy goes on by itself");

    const auto last = framer.flush();
    const auto expected = withoutReturn(rest);
    holds(last.has_value() == !expected.isEmpty() && (!last || *last == expected), "the rest is the last line");
    holds(framer.buffer().isEmpty() && !framer.flush(), "nothing is left behind the last line");
    holds(framer.feed("next\r\n") == QList<QByteArray>{"next"}, "it goes on afresh");
}

} // namespace zelk::fuzz
