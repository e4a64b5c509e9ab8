#include "ChaosHistory.h"

#include "Support/Task.h"
#include "Transport/HelperError.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPointer>

#include <algorithm>
#include <thread>

namespace zelk::chaos {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

QString wordOf(const HelperEvent &event) {
    if (std::holds_alternative<HelperEvent::HelperReady>(event.value))
        return u"ready"_s;
    if (std::holds_alternative<HelperEvent::HelperCrashed>(event.value))
        return u"crashed"_s;
    const auto &server = std::get<HelperEvent::Server>(event.value).event;
    if (const auto *log = std::get_if<ServerEvent::Log>(&server.value))
        return log->message;
    if (const auto *unknown = std::get_if<ServerEvent::Unknown>(&server.value))
        return u"unknown "_s + unknown->type;
    return u"another event"_s;
}

QString inWords(Clock::Duration duration) {
    return QString::number(std::chrono::duration<double>(duration).count(), 'g', 12) + u" s"_s;
}

} // namespace

History::History(std::uint64_t seed, SerialExecutor::Ref elsewhere, Tally &tally)
    : _seed(seed), _chance(seed), _tally(tally), _mood(static_cast<Mood>(_chance.below(5))),
      _elsewhere(std::move(elsewhere)),
      _process(std::make_shared<HelperProcess>(u"engine"_s, QStringList{}, _clock, _engine.launcher())),
      _client(std::make_shared<HelperClient>(_process, _clock)) {
    startTask(this, [self = QPointer(this), reader = _client->events()](std::stop_token stop) -> QCoro::Task<> {
        while (true) {
            const auto event = co_await reader.next(stop);
            if (!event)
                break;
            self->_events.append(wordOf(*event));
        }
        self->_streamIsOver = true;
    });
    // In the application nobody but the client holds it.
    if (_chance.oneIn(2))
        _process.reset();
}

History::~History() = default;

QString History::play() {
    if (_chance.oneIn(10)) {
        call(1 + _chance.below(2), false);
        settle();
    }
    if (_failure.isEmpty())
        start();
    const int steps = 4 + _chance.below(_mood == Mood::Crashing ? 30 : 20);
    for (int i = 0; i < steps && _client && _failure.isEmpty(); ++i) {
        step();
        if (_failure.isEmpty())
            settle();
    }
    if (_failure.isEmpty())
        finish();
    if (_failure.isEmpty())
        return {};
    return u"%1\nSeed %2. The steps:\n  %3"_s.arg(_failure, QString::number(_seed), _steps.join(u"\n  "_s));
}

void History::step() {
    switch (_model.phase) {
    case Model::Phase::Running:
        stepWhileRunning();
        return;
    case Model::Phase::Waiting:
        stepWhileWaiting();
        return;
    case Model::Phase::Idle:
    case Model::Phase::Over:
        if (_chance.oneIn(2))
            call(1 + _chance.below(3), _chance.oneIn(3));
        else if (_chance.oneIn(3))
            start();
        else
            advance(Clock::Duration(_chance.below(60'000)) * 1'000'000);
        return;
    }
}

void History::stepWhileRunning() {
    const int crashes = _mood == Mood::Crashing ? 40 : 8;
    const int talk = _mood == Mood::Talkative ? 60 : 30;
    const int deaf = _mood == Mood::Deaf ? 20 : 3;
    int choice = _chance.below(80 + crashes + talk + deaf);
    const auto isChosen = [&choice](int weight) {
        choice -= weight;
        return choice < 0;
    };
    if (const auto danger = _model.endOfDanger(); danger && _chance.oneIn(3)) {
        // Six crashes in ten seconds are counted to the moment.
        advance(*danger - _model.now + Clock::Duration(_chance.below(2)));
        settle();
        if (_failure.isEmpty())
            crash();
    } else if (isChosen(crashes)) {
        if (_chance.oneIn(3))
            crashUnderCalls();
        else
            crash();
    } else if (isChosen(talk)) {
        speak();
    } else if (isChosen(deaf)) {
        if (_model.isReading && _chance.oneIn(5) && _model.inputIsOpen) {
            did(u"closes its input"_s);
            _engine.closeInput();
            _model.closeInput();
        } else if (!_model.isReading) {
            did(u"reads again"_s);
            _model.resumeReading();
        } else if (!_half) {
            did(u"stops reading"_s);
            _model.isReading = false;
        }
    } else if (isChosen(30)) {
        call(1 + _chance.below(4), _chance.oneIn(4));
    } else if (isChosen(12)) {
        // To the next deadline, to a moment before it, or anywhere; or to where a run begins to count as healthy.
        const auto next = _model.nextDeadline();
        const Clock::Time healthy = _model.launchedAt + 30s;
        if ((_mood == Mood::Sleepy || _chance.oneIn(4)) && healthy > _model.now)
            advance(healthy - _model.now - Clock::Duration(_chance.below(2)));
        else if (next && !_chance.oneIn(4))
            advance(std::max<Clock::Duration>(*next - _model.now - Clock::Duration(_chance.below(2)), 0ns));
        else
            advance(Clock::Duration(_chance.below(12'000)) * 1'000'000);
    } else if (isChosen(12)) {
        raceAReply();
    } else if (isChosen(12)) {
        cancelOne();
    } else if (isChosen(5)) {
        start();
    } else if (isChosen(1)) {
        release();
    } else if (isChosen(1)) {
        releaseUnderReplies();
    } else if (isChosen(1)) {
        releaseUnderTheEnd();
    } else if (isChosen(2) && _model.outputIsOpen) {
        did(u"closes its output"_s);
        _engine.play({{.kind = Deed::Kind::CloseOutput, .bytes = {}}});
        _model.outputIsOpen = false;
    } else {
        did(u"complains"_s);
        _engine.play({{.kind = Deed::Kind::Complain, .bytes = _chance.oneIn(2) ? "why\n\nthis\n" : "\xff\xfe"}});
    }
}

void History::stepWhileWaiting() {
    if (_chance.oneIn(8)) {
        call(1 + _chance.below(2), _chance.oneIn(3));
    } else if (_chance.oneIn(30)) {
        release();
    } else {
        const Clock::Duration left = _model.restartAt - _model.now;
        if (_chance.oneIn(6))
            advance(left - 1ns);
        else if (_chance.oneIn(6))
            advance(left + Clock::Duration(_chance.below(40'000)) * 1'000'000);
        else
            advance(left);
    }
}

void History::start() {
    const bool isFirst = _model.phase == Model::Phase::Idle;
    did(u"start"_s);
    bool shallFail = false;
    if (isFirst) {
        const Launch launch = planLaunch();
        shallFail = launch.isRefused;
    }
    const auto ending = follow(_client->start());
    if (!until([&] { return ending->times > 0; }))
        check(false, u"start never ended"_s);
    else
        check(ending->word == (shallFail ? u"unavailable"_s : u"done"_s), u"start ended as "_s + ending->word);
    if (isFirst && _failure.isEmpty())
        settle();
}

Launch History::planLaunch() {
    Launch launch;
    QList<Line> lastWords;
    if (_chance.oneIn(_mood == Mood::Crashing ? 40 : 25)) {
        launch.isRefused = true;
        did(u"will refuse to start"_s);
    } else if (_chance.oneIn(_mood == Mood::Crashing ? 2 : 12)) {
        for (int words = _chance.below(3); words > 0; --words)
            lastWords.append(randomLine());
        for (const Line &line : lastWords)
            launch.first.push_back({.bytes = line.bytes + '\n'});
        launch.first.push_back({.kind = Deed::Kind::End, .bytes = {}, .exit = randomExit()});
        did(u"will die as soon as it is started"_s);
    }
    _engine.plan(launch);
    _model.launch(launch, lastWords);
    return launch;
}

ChildProcess::Exit History::randomExit() {
    using Reason = ChildProcess::ExitReason;
    if (_chance.oneIn(_mood == Mood::Crashing ? 25 : 6))
        return {.reason = Reason::Exited, .status = 0};
    if (_chance.oneIn(12))
        return {.reason = Reason::Unknown, .status = _chance.below(256)};
    if (_chance.oneIn(2))
        return {.reason = Reason::Signalled, .status = 1 + _chance.below(64)};
    return {.reason = Reason::Exited, .status = 1 + _chance.below(255)};
}

void History::endEngine(Deeds deeds) {
    const auto exit = randomExit();
    did(exit.reason == ChildProcess::ExitReason::Exited && exit.status == 0 ? u"a clean exit"_s : u"a crash"_s,
        u"reason %1 status %2"_s.arg(static_cast<int>(exit.reason)).arg(exit.status));
    deeds.push_back({.kind = Deed::Kind::End, .bytes = {}, .exit = exit});
    _engine.play(std::move(deeds));
    _half.reset();
    _restOfHalf.clear();
    _model.end(exit);
    if (_model.gaveUp)
        did(u"it is given up on"_s);
}

void History::crash() {
    Deeds deeds;
    if (_model.outputIsOpen && _chance.oneIn(2)) {
        QList<Line> lastWords;
        for (int count = 1 + _chance.below(3); count > 0; --count)
            lastWords.append(randomLine());
        deeds = sayings(lastWords, true);
    }
    endEngine(std::move(deeds));
}

void History::crashUnderCalls() {
    did(u"calls and the end at once"_s);
    const auto before = _model.calls.size();
    call(1 + _chance.below(4), _chance.oneIn(2));
    endEngine({});
    // The engine may have been gone when they came to it.
    for (auto each = before; each < _model.calls.size(); ++each) {
        const auto &call = _model.calls.at(each);
        if (call->kind == CallKind::Notice)
            call->mayEnd = {u"done"_s, u"crashed"_s, u"unavailable"_s};
        else
            call->mayEnd = {u"crashed"_s, u"unavailable"_s};
    }
}

void History::advance(Clock::Duration by) {
    const auto to = _model.now + by;
    did(u"time"_s, inWords(by) + u" to "_s + inWords(to));
    const bool restarts = _model.phase == Model::Phase::Waiting && _model.restartAt <= to;
    _model.advance(to);
    if (restarts)
        planLaunch();
    _clock->advance(by);
}

void History::cancelOne() {
    const auto open = _model.open();
    if (open.empty())
        return;
    const auto &call = _chance.of(open);
    did(u"cancel"_s, call->tag.left(8));
    _stops[call.get()].request_stop();
    _model.cancel(call);
}

void History::release() {
    // An event that has come tells that all before it has been dealt with.
    _logIsComplete = _model.phase != Model::Phase::Running;
    if (!_logIsComplete && _model.outputIsOpen && _chance.oneIn(2)) {
        const QString message = u"e%1"_s.arg(++_made);
        _engine.play(sayings(
            {{.kind = Line::Kind::Event, .bytes = eventLine(message, false), .word = message, .unlessOtherwise = {}}},
            false));
        settle();
        _logIsComplete = true;
    }
    did(u"the client is released"_s);
    _client.reset();
    _model.release();
}

void History::releaseUnderReplies() {
    if (!_model.outputIsOpen || _half)
        return;
    QList<Line> lines;
    for (const auto &call : _model.answerable()) {
        if (call->kind == CallKind::EitherShape || _chance.oneIn(3))
            continue;
        lines.append(replyTo(call->id, call->tag));
        lines.last().unlessOtherwise = u"unavailable"_s;
    }
    const QString message = u"e%1"_s.arg(++_made);
    lines.append(
        {.kind = Line::Kind::Event, .bytes = eventLine(message, false), .word = message, .unlessOtherwise = {}});
    did(u"the client is released under replies"_s);
    _engine.play(sayings(lines, false));
    _client.reset();
    _model.release();
}

void History::releaseUnderTheEnd() {
    did(u"the client is released under the engine's end"_s);
    const auto open = _model.open();
    crash();
    for (const auto &call : open)
        call->mayEnd.append(u"unavailable"_s);
    _client.reset();
    _model.release();
}

} // namespace zelk::chaos
