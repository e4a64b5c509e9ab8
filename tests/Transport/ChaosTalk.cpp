// What the engine says, and how it cuts it up.
#include "ChaosHistory.h"

#include <algorithm>

namespace zelk::chaos {

using namespace Qt::StringLiterals;

Line History::replyTo(std::uint64_t id, const QString &tag) {
    const auto answer = static_cast<Answer>(_chance.oneIn(2) ? 0 : _chance.below(answers));
    const QString word = tag.section(u'x', 0, 0);
    return {.kind = Line::Kind::Reply,
            .bytes = replyLine(answer, id, word, _chance),
            .id = id,
            .answer = answer,
            .word = word,
            .unlessOtherwise = {}};
}

Line History::randomLine() {
    auto answerable = _model.answerable();
    // That a second try is on its way to an engine that doesn't read could not be seen from here.
    if (!_model.isReading)
        std::erase_if(answerable, [](const auto &call) { return call->kind == CallKind::EitherShape; });
    const int choice = _chance.below(10);
    if (choice < 4 && !answerable.empty()) {
        const auto &call = _chance.of(answerable);
        Line reply = replyTo(call->id, call->tag);
        if (_chance.oneIn(6)) {
            did(u"a spoilt reply"_s);
            return {.kind = Line::Kind::Junk, .bytes = spoilt(reply.bytes, _chance), .word = {}, .unlessOtherwise = {}};
        }
        did(u"a reply"_s, QString::fromUtf8(reply.bytes));
        return reply;
    }
    if (choice < 5) {
        // To what was answered before, or to what was never asked.
        did(u"a reply to nobody"_s);
        const auto id = _model.lastId + static_cast<std::uint64_t>(_chance.below(3)) * 1000;
        const auto open = _model.answerable();
        const bool isOpen = std::any_of(open.begin(), open.end(), [&](const auto &call) { return call->id == id; });
        return replyTo(isOpen ? 0 : id, u"nobody"_s);
    }
    if (choice < 7) {
        did(u"junk"_s);
        return {.kind = Line::Kind::Junk, .bytes = junkLine(_chance), .word = {}, .unlessOtherwise = {}};
    }
    if (choice < 8) {
        did(u"a blank line"_s);
        return {.kind = Line::Kind::Blank, .bytes = {}, .word = {}, .unlessOtherwise = {}};
    }
    const bool isUnknown = _chance.oneIn(5);
    QString message = u"e%1"_s.arg(++_made);
    // Now and then a line that takes many chunks, or the platform's largest read.
    if (_chance.oneIn(60))
        message += QString(20000 + _chance.below(300000), u'x');
    did(u"an event"_s, message);
    return {.kind = Line::Kind::Event,
            .bytes = eventLine(message, isUnknown),
            .word = isUnknown ? u"unknown "_s + message : message,
            .unlessOtherwise = {}};
}

Deeds History::sayings(const QList<Line> &lines, bool mayHalt) {
    QByteArray bytes = std::exchange(_restOfHalf, {});
    QList<Line> heard;
    if (_half)
        heard.append(*std::exchange(_half, std::nullopt));
    qsizetype lastSize = 0;
    for (const Line &line : lines) {
        const QByteArray whole = line.bytes + (_chance.oneIn(4) ? "\r\n" : "\n");
        lastSize = whole.size();
        bytes += whole;
        heard.append(line);
    }
    if (mayHalt && lastSize > 1 && _chance.oneIn(4)) {
        did(u"half of the last line"_s);
        const auto kept = 1 + _chance.below(static_cast<int>(lastSize) - 1);
        _restOfHalf = bytes.last(kept);
        bytes.chop(kept);
        _half = heard.takeLast();
    }
    Deeds deeds;
    while (!bytes.isEmpty()) {
        const auto size = static_cast<int>(bytes.size());
        const auto most = std::min(size, _chance.oneIn(4) ? 5 : 9000);
        const auto chunk = _chance.oneIn(3) ? size : 1 + _chance.below(most);
        deeds.push_back({.bytes = bytes.first(chunk)});
        bytes.remove(0, chunk);
    }
    for (const Line &line : std::as_const(heard))
        _model.hear(line);
    return deeds;
}

void History::speak() {
    if (!_model.outputIsOpen)
        return;
    QList<Line> lines;
    for (int count = 1 + _chance.below(_mood == Mood::Talkative ? 12 : 4); count > 0; --count) {
        lines.append(randomLine());
        if (lines.constLast().kind == Line::Kind::Reply && _chance.oneIn(5)) {
            did(u"the same reply again"_s);
            lines.append(lines.constLast());
        }
    }
    _engine.play(sayings(lines, true));
}

void History::raceAReply() {
    auto calls = _model.answerable();
    std::erase_if(calls, [](const auto &call) { return call->kind == CallKind::EitherShape; });
    if (calls.empty() || !_model.outputIsOpen || _half)
        return;
    const auto call = _chance.of(calls);
    Line reply = replyTo(call->id, call->tag);
    const bool isCancelled = _chance.oneIn(2);
    did(isCancelled ? u"a reply and a cancellation at once"_s : u"a reply and its time-out at once"_s,
        call->tag.left(8));
    reply.unlessOtherwise = isCancelled ? u"cancelled"_s : u"timed out"_s;
    _engine.play(sayings({reply}, false));
    if (isCancelled)
        _stops[call.get()].request_stop();
    else
        advance(call->deadline - _model.now);
}

} // namespace zelk::chaos
