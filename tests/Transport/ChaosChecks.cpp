// What is looked at while a history goes on, and at its end.
#include "ChaosHistory.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <algorithm>
#include <thread>

namespace zelk::chaos {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// Far more than any machine needs; only what hangs takes it.
constexpr auto patience = 30s;

QString member(const QString &line, const QString &key) {
    return line.section(u'"' + key + u"\":\""_s, 1).section(u'"', 0, 0);
}

QString shortened(const QString &text) {
    return text.size() > 120 ? text.first(120) + u"… (%1)"_s.arg(text.size()) : text;
}

QString listed(const QStringList &list) {
    QString text;
    for (const QString &each : list)
        text += u"\n    "_s + shortened(each);
    return text;
}

bool isPartOf(const QStringList &part, const QStringList &whole) {
    auto next = whole.begin();
    return std::all_of(part.begin(), part.end(), [&](const QString &each) {
        next = std::find(next, whole.end(), each);
        return next != whole.end() && (++next, true);
    });
}

/// Ready, then what the engine says, then a crash and ready again, or nothing more.
bool isInAllowedOrder(const QStringList &events) {
    bool isUp = false;
    for (const QString &event : events) {
        if (event == u"ready"_s) {
            if (isUp)
                return false;
            isUp = true;
        } else {
            if (!isUp)
                return false;
            isUp = event != u"crashed"_s;
        }
    }
    return true;
}

} // namespace

void History::did(const QString &what, const QString &details) {
    ++_tally[what];
    _steps.append(details.isEmpty() ? what : what + u": "_s + shortened(details));
}

void History::check(bool isSo, const QString &claim) {
    if (!isSo && _failure.isEmpty())
        _failure = claim;
}

bool History::until(const std::function<bool()> &isSo) {
    const QDeadlineTimer deadline(patience);
    for (int turn = 0; !isSo(); ++turn) {
        readInput();
        QCoreApplication::processEvents();
        // Who sleeps is woken soon on a crowded machine, who only yields waits for everybody's turn.
        std::this_thread::sleep_for(turn < 50 ? 5us : 200us);
        if (deadline.hasExpired())
            return false;
    }
    return true;
}

void History::readInput() {
    if (!_model.isReading)
        return;
    const auto lines = _engine.read();
    for (const QByteArray &line : lines) {
        const QString text = QString::fromUtf8(line);
        const auto id = member(text, u"id"_s);
        // The request's own id is the first of the line, its tag the id among its parameters.
        const QString tag = member(text.section(u"\"params\""_s, 1), u"id"_s);
        check(id.startsWith(u'r') && _model.read(id.mid(1).toULongLong(), tag),
              u"a line that was not to come, or an id that came before: "_s + text.left(200));
    }
}

void History::settle() {
    const auto endsAreThere = [this] {
        return std::all_of(_model.calls.begin(), _model.calls.end(), [this](const auto &call) {
            return call->mayEnd.isEmpty() || !call->isSure || endingOf(call).times > 0;
        });
    };
    const auto linesAreThere = [this] {
        return _model.phase != Model::Phase::Running || !_model.isReading || !_model.inputIsOpen ||
               _model.linesOnTheirWay.empty();
    };
    // Who is released says no more than it has said.
    const auto eventsAreThere = [this] { return !_client || _events.size() >= _model.events.size(); };
    const auto waitsForTheRightTime = [this] {
        const auto next = _model.nextDeadline();
        return _clock->pendingAlarms() == _model.alarms() &&
               _clock->untilNextAlarm() == (next ? std::optional(*next - _model.now) : std::nullopt);
    };
    const std::vector<std::pair<QString, std::function<bool()>>> all{
        {u"a call has not ended that must have"_s, endsAreThere},
        {u"a line has not reached the engine"_s, linesAreThere},
        {u"an event has not come"_s, eventsAreThere},
        {u"the stream of events is over, or isn't, against expectation"_s,
         [this] { return _streamIsOver == _model.streamIsOver; }},
        {u"the number of launches is wrong"_s,
         [this] { return _engine.launches() == _model.launches && _engine.refusals() == _model.refusals; }},
        {u"what waits for the clock is too much or too little, or waits for another time"_s, waitsForTheRightTime},
    };
    for (const auto &[claim, isSo] : all) {
        if (!until(isSo))
            check(false, claim);
        if (!_failure.isEmpty())
            break;
    }
    checkEndings();
    checkEvents();
    if (!_failure.isEmpty())
        _failure += u"\n  events:%1\n  expected:%2"_s.arg(listed(_events), listed(_model.events));
}

void History::checkEndings() {
    for (const auto &call : _model.calls) {
        const Ending &ending = endingOf(call);
        const int times = ending.times;
        const QString which = u"the call %1"_s.arg(call->tag.left(8));
        check(times <= 1, which + u" has ended twice"_s);
        check(times == 0 || !call->mayEnd.isEmpty(),
              which + u" has ended before its time: "_s + (times ? ending.word : u""_s));
        check(times == 0 || call->mayEnd.isEmpty() || call->mayEnd.contains(ending.word),
              u"%1 has ended as \"%2\", not as \"%3\""_s.arg(which, times ? ending.word : u""_s,
                                                             call->mayEnd.join(u"\" or \""_s)));
    }
}

void History::checkEvents() {
    check(_events.size() <= _model.events.size() && _model.events.first(_events.size()) == _events,
          u"the events are not those that were sent, in their order"_s);
    check(isInAllowedOrder(_events), u"ready and crashed do not take turns"_s);
}

void History::checkLog() {
    QStringList expected;
    for (const LogLine &line : _model.log) {
        if (!line.racing || !_logIsComplete || endingOf(line.racing).word == line.endedAs)
            expected.append(line.text);
    }
    const auto actual = _capture.messages(u"client"_s);
    check(_logIsComplete ? actual == expected : isPartOf(actual, expected),
          u"each line must be a reply, an event or a line of the log, and each end be noted once. The log:%1\n"
          "  expected:%2"_s.arg(listed(actual), listed(expected)));
    const auto givenUp = _capture.messages(u"helper"_s, u"helper crashed "_s);
    const QStringList oneLine{u"helper crashed 6 times in 10s; giving up"_s};
    check(!_logIsComplete || givenUp == (_model.gaveUp ? oneLine : QStringList()), u"giving up was noted wrongly"_s);
}

void History::finish() {
    if (_client && _model.phase == Model::Phase::Running && _chance.oneIn(2)) {
        crash();
        settle();
    }
    const bool isDown = _model.phase != Model::Phase::Running;
    if (_client) {
        if (!_failure.isEmpty())
            return;
        release();
        settle();
        if (isDown && _process) {
            const auto ending = follow(_process->write("x"));
            check(until([&] { return ending->times > 0; }) && ending->word == u"unavailable"_s,
                  u"a write without an engine ended as "_s + ending->word);
        }
    }
    _process.reset();
    _model.releaseSupervisor();
    check(until([this] { return _engine.isReleased(); }), u"the supervisor was not released"_s);
    settle();
    check(std::all_of(_model.calls.begin(), _model.calls.end(),
                      [this](const auto &call) { return endingOf(call).times == 1; }),
          u"not every call has ended once"_s);
    checkLog();
    for (const auto &call : _model.calls)
        ++_tally[u"ended as "_s + endingOf(call).word.section(u' ', 0, 0)];
}

} // namespace zelk::chaos
