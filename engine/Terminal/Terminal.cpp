#include "Terminal/Terminal.h"

#include "Terminal/Interrupts.h"
#include "Terminal/Verbs.h"

#include <csignal>
#include <exception>
#include <optional>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

int carryOut(Session &session, const CommandLine &line) {
    switch (line.verb) {
    case CommandLine::Verb::List:
        return listPlaylists(session);
    case CommandLine::Verb::Sync:
        return syncPlaylists(session, line);
    case CommandLine::Verb::Review:
        return reviewTracks(session);
    case CommandLine::Verb::Doctor:
        return runDoctor(session, line.fix);
    case CommandLine::Verb::None:
    case CommandLine::Verb::Serve:
        break;
    }
    return wrongUse;
}

int carryOutOrComplain(Session &session, const CommandLine &line) {
    try {
        const int status = carryOut(session, line);
        session.console.setStatus({});
        passOn(session);
        return status;
    } catch (const MethodError &error) {
        session.console.complain(u"zelk: "_s + error.message());
    } catch (const std::exception &error) {
        session.console.complain(
            u"zelk: %1. Try again, and run \"zelk doctor\" if it stays."_s.arg(QString::fromUtf8(error.what())));
    }
    return somethingFailed;
}

} // namespace

int runAtTerminal(const CommandLine &line) {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a file that may grow no further is a failed write, like a full disk
    Console console(STDOUT_FILENO, STDERR_FILENO);
    EventQueue events;
    int status = somethingFailed;
    {
        std::optional<SignalsHeld> beginning(std::in_place);
        Engine engine(EnginePaths::fromEnvironment(), events);
        beginning.reset();
        Session session{engine, events, console};
        status = carryOutOrComplain(session, line);
        console.flush();
    }
    if (console.isClosed()) { // as if the signal had ended it: nobody reads, so there is nothing to say
        return stoppedBySignal + SIGPIPE;
    }
    return console.hasFailed() ? somethingFailed : status;
}

bool print(const QString &text, bool isError) {
    std::signal(SIGPIPE, SIG_IGN);
    Console console(isError ? STDERR_FILENO : STDOUT_FILENO, STDERR_FILENO);
    console.text(text);
    console.flush();
    return !console.hasFailed();
}

bool passOn(Console &console, const ServerEvent &event) {
    if (const auto *log = caseOf<ServerEvent::Log>(event)) {
        if (log->level == ServerEvent::LogLevel::warn || log->level == ServerEvent::LogLevel::error) {
            console.complain(u"zelk: "_s + log->message);
        }
        return false;
    }
    if (const auto *error = caseOf<ServerEvent::Error>(event)) {
        console.complain(u"zelk: "_s + error->message);
        return true;
    }
    return false;
}

void passOn(Session &session) {
    for (const ServerEvent &event : session.events.take()) {
        passOn(session.console, event);
    }
}

} // namespace zelk::engine
