#include "ChaosModel.h"

#include <algorithm>

namespace zelk::chaos {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

QString dropped(QByteArrayView line) {
    return u"dropping undecodable line: "_s + (line.isValidUtf8() ? QString::fromUtf8(line) : u"<non-utf8>"_s);
}

bool isAnswer(const QString &word) {
    return word == u"done"_s || word.startsWith(u"value "_s);
}

} // namespace

std::vector<CallRef> Model::open() const {
    std::vector<CallRef> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [](const auto &call) { return call->mayEnd.isEmpty(); });
    return found;
}

std::vector<CallRef> Model::answerable() const {
    auto found = open();
    std::erase_if(found, [](const auto &call) { return call->id == 0; });
    return found;
}

std::optional<Clock::Time> Model::nextDeadline() const {
    std::optional<Clock::Time> next;
    if (phase == Phase::Waiting)
        next = restartAt;
    for (const auto &call : open())
        next = std::min(next.value_or(call->deadline), call->deadline);
    return next;
}

int Model::alarms() const {
    return static_cast<int>(open().size()) + (phase == Phase::Waiting ? 1 : 0);
}

void Model::launch(const Launch &launch, const QList<Line> &lastWords) {
    if (launch.isRefused) {
        ++refusals;
        if (phase == Phase::Waiting) {
            note(u"helper relaunch failed: The zelk helper is not available."_s);
            streamIsOver = true;
        }
        phase = Phase::Over;
        return;
    }
    ++launches;
    phase = Phase::Running;
    launchedAt = now;
    isReading = inputIsOpen = outputIsOpen = true;
    events.append(u"ready"_s);
    for (const Line &line : lastWords)
        hear(line);
    if (!launch.first.empty())
        end(launch.first.back().exit);
}

CallRef Model::call(CallKind kind, const QString &tag, Clock::Duration timeout) {
    auto call = std::make_shared<Call>();
    call->kind = kind;
    call->tag = tag;
    calls.push_back(call);
    send(call, timeout);
    return call;
}

void Model::send(const CallRef &call, Clock::Duration timeout) {
    call->id = 0;
    call->deadline = now + timeout;
    if (phase != Phase::Running) {
        fail(call, u"unavailable"_s);
        return;
    }
    if (!inputIsOpen) {
        fail(call, u"crashed"_s);
        // The engine's end may come between the two tries.
        if (call->isRetry)
            call->mayEnd = {u"crashed"_s, u"unavailable"_s};
        return;
    }
    linesOnTheirWay.push_back(call->tag);
    if (call->kind != CallKind::Notice)
        return;
    call->mayEnd = {u"done"_s};
    if (!isReading) {
        call->mayEnd += {u"crashed"_s, u"unavailable"_s};
        call->isSure = false;
    }
}

void Model::fail(const CallRef &call, const QString &word) {
    if (call->kind == CallKind::EitherShape && !call->isRetry) {
        call->isRetry = true;
        send(call, 15s);
        return;
    }
    call->mayEnd = {word};
}

bool Model::read(std::uint64_t id, const QString &tag) {
    // Calls from two threads at once come in either order, so the tag is looked for and the ids must only rise.
    if (id <= lastId)
        return false;
    lastId = id;
    if (phase != Phase::Running)
        return true;
    const auto expected = std::find(linesOnTheirWay.begin(), linesOnTheirWay.end(), tag);
    if (expected == linesOnTheirWay.end())
        return false;
    linesOnTheirWay.erase(expected);
    for (const auto &call : calls) {
        if (call->tag == tag)
            call->id = id;
    }
    return true;
}

QString Model::outcome(const Call &call, const Line &line) {
    if (line.answer == Answer::Failure)
        return u"engine internal "_s + line.word;
    if (line.answer == Answer::FailureWithoutWord)
        return u"no word"_s;
    if (call.kind == CallKind::Empty)
        return u"done"_s;
    const bool fits = line.answer == (call.isRetry ? Answer::Bare : Answer::Wrapped);
    return fits ? u"value "_s + line.word : u"misfit"_s;
}

void Model::hear(const Line &line) {
    if (line.kind == Line::Kind::Blank)
        return;
    if (line.kind == Line::Kind::Event) {
        events.append(line.word);
        return;
    }
    if (line.kind == Line::Kind::Reply) {
        for (const auto &call : answerable()) {
            if (call->id != line.id)
                continue;
            const QString word = outcome(*call, line);
            if (line.unlessOtherwise.isEmpty()) {
                if (isAnswer(word))
                    call->mayEnd = {word};
                else
                    fail(call, word);
            } else {
                call->mayEnd = {word, line.unlessOtherwise};
                note(dropped(line.bytes), call, line.unlessOtherwise);
            }
            return;
        }
    }
    note(dropped(line.bytes));
}

void Model::advance(Clock::Time to) {
    now = to;
    for (const auto &call : open()) {
        if (call->deadline <= now)
            fail(call, u"timed out"_s);
    }
}

void Model::resumeReading() {
    isReading = true;
    for (const auto &call : calls) {
        if (!call->isSure) {
            call->mayEnd = {u"done"_s};
            call->isSure = true;
        }
    }
}

void Model::closeInput() {
    inputIsOpen = false;
}

void Model::end(ChildProcess::Exit exit) {
    using Reason = ChildProcess::ExitReason;
    const bool isClean = exit.reason == Reason::Exited && exit.status == 0;
    linesOnTheirWay.clear();
    for (const auto &call : calls)
        call->isSure = true; // whatever waits to be written has its end now
    phase = Phase::Over;
    if (isClean) {
        note(u"helper exited cleanly"_s);
        streamIsOver = true;
    } else {
        QString reason = u"unknown"_s;
        if (exit.reason != Reason::Unknown)
            reason = (exit.reason == Reason::Exited ? u"exit "_s : u"signal "_s) + QString::number(exit.status);
        note(u"helper crashed: status=%1 reason=%2"_s.arg(exit.status).arg(reason));
        events.append(u"crashed"_s);
    }
    for (const auto &call : open()) {
        fail(call, u"crashed"_s);
        // What the engine hasn't read may come to the pipe before the word of the end or after it, a second try as well
        // when the first has failed by the pipe that went first.
        if (call->id == 0 || (call->isRetry && !isReading))
            call->mayEnd = {u"crashed"_s, u"unavailable"_s};
    }
    if (isClean)
        return;
    const auto delay = policyAfterCrash();
    if (!delay) {
        streamIsOver = gaveUp = true;
        return;
    }
    note(u"restarting helper in %1s"_s.arg(std::chrono::duration<double>(*delay).count(), 0, 'f', 2));
    phase = Phase::Waiting;
    restartAt = now + *delay;
}

std::optional<Clock::Duration> Model::policyAfterCrash() {
    _crashes.push_back(now);
    const auto recent =
        std::count_if(_crashes.begin(), _crashes.end(), [this](auto crash) { return crash >= now - 10s; });
    if (recent > 5)
        return std::nullopt;
    if (now >= launchedAt + 30s)
        _doublings = 0;
    const Clock::Duration delay = std::min<Clock::Duration>(250ms * (1 << _doublings), 4s);
    _doublings = std::min(_doublings + 1, 10);
    return delay;
}

std::optional<Clock::Time> Model::endOfDanger() const {
    if (_crashes.size() < 5)
        return std::nullopt;
    const auto end = _crashes.at(_crashes.size() - 5) + 10s;
    return end >= now ? std::optional(end) : std::nullopt;
}

void Model::release() {
    for (const auto &call : calls) {
        if (call->mayEnd.isEmpty())
            call->mayEnd = {u"unavailable"_s};
    }
    linesOnTheirWay.clear();
    phase = Phase::Over;
    streamIsOver = true;
}

void Model::releaseSupervisor() {
    for (const auto &call : calls)
        call->isSure = true;
}

} // namespace zelk::chaos
