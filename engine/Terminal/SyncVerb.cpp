#include "Terminal/Choice.h"
#include "Terminal/Interrupts.h"
#include "Terminal/SyncView.h"
#include "Terminal/Verbs.h"

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

int refuseChoice(Session &session, const ChoiceProblem &problem) {
    session.console.complain(u"zelk: %1."_s.arg(problem.message()));
    if (problem.candidates().isEmpty()) {
        session.console.complain(u"\"zelk list\" shows all there are."_s);
    } else {
        session.console.complain(u"Name one of these, by its id if need be:"_s);
        for (const QString &candidate : problem.candidates()) {
            session.console.complain(u"  "_s + candidate);
        }
    }
    return wrongUse;
}

/// Shows the run up to its end and how it came out. Returns the signal that has stopped it, or 0.
int watch(Session &session, Interrupts &interrupts, SyncView &view) {
    Console &console = session.console;
    console.setGiveUp(interrupts.descriptor());
    bool cancelled = false;
    while (!view.summary()) {
        view.drawProgress();
        if (cancelled) {
            console.setStatus(u"Stopping. Press Ctrl+C once more to end at once."_s);
        }
        console.flush();
        if (!cancelled && (interrupts.signal() != 0 || console.isClosed())) {
            cancelled = true;
            session.engine.cancelSync(std::nullopt);
            continue;
        }
        interrupts.wait(session.events.descriptor());
        for (const ServerEvent &event : session.events.take()) {
            view.take(event);
        }
    }
    view.drawSummary();
    if (interrupts.signal() != 0) {
        console.complain(u"zelk: stopped. What was finished is kept, and the next sync goes on from there."_s);
    }
    console.flush();
    console.setGiveUp(-1);
    return interrupts.signal();
}

} // namespace

int syncPlaylists(Session &session, const CommandLine &line) {
    const auto playlists = namePlaylists(session.engine.listPlaylists(std::nullopt));
    passOn(session);
    std::vector<NamedPlaylist> chosen;
    try {
        chosen = choosePlaylists(playlists, line.names);
    } catch (const ChoiceProblem &problem) {
        return refuseChoice(session, problem);
    }
    if (chosen.empty()) {
        session.console.complain(
            u"zelk: there are no playlists to sync. Put your exported playlists (CSV, M3U, XSPF) into %1."_s.arg(
                session.engine.config().playlistDirs.join(u", "_s)));
        return somethingFailed;
    }
    std::vector<PlaylistSelection> selection;
    qint64 tracks = 0;
    for (const NamedPlaylist &named : chosen) {
        selection.push_back({named.playlist.source, named.playlist.id, named.playlist.name});
        tracks += named.playlist.trackCount.value_or(0);
    }
    SyncOptions options;
    if (line.dryRun) {
        options.dryRun = true;
    }
    if (line.cleanup) {
        options.cleanup = true;
    }
    SyncView view(session.console, tracks);
    Interrupts interrupts; // before this, a signal ends the process at once: there is nothing in hand
    {
        const SignalsHeld beginning;
        session.engine.startSync(selection, options, [] {});
    }
    const int signal = watch(session, interrupts, view);
    if (signal != 0) {
        return stoppedBySignal + signal;
    }
    return view.hasFailures() ? somethingFailed : allDone;
}

} // namespace zelk::engine
