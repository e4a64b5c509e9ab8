#pragma once

#include "Serve/CommandLine.h"
#include "Serve/Engine.h"
#include "Terminal/Console.h"
#include "Terminal/EventQueue.h"

namespace zelk::engine {

/// What a verb works with.
struct Session {
    Engine &engine;
    EventQueue &events;
    Console &console;
};

/// Exit statuses.
constexpr int allDone = 0;
constexpr int somethingFailed = 1;
constexpr int wrongUse = 2;
/// Added to the number of the signal that has stopped a verb.
constexpr int stoppedBySignal = 128;

// Each carries out one verb and returns the exit status; throws MethodError where the engine refuses.
int listPlaylists(Session &session);
int syncPlaylists(Session &session, const CommandLine &line);
int reviewTracks(Session &session);
int runDoctor(Session &session, bool fix);

/// Says what the engine has to say besides, on standard error: log events at warn and above, and errors. Returns
/// whether the event is an error.
bool passOn(Console &console, const ServerEvent &event);
/// The same with all events that wait.
void passOn(Session &session);

} // namespace zelk::engine
