#include "App/UnattendedRun.h"

#include "App/AppModel.h"
#include "Transport/Tagged.h"

#include <QCoreApplication>
#include <QMetaEnum>
#include <QQuickWindow>
#include <QTextStream>

#include <chrono>

namespace zelk {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Longer than any run that makes sense without somebody who watches it.
constexpr auto patience = 10min;
/// Rows and bars follow the last event within a few frames.
constexpr auto settling = 500ms;

void print(const QString &line) {
    QTextStream(stdout) << line << Qt::endl;
}

QString nameOf(StatusRole role) {
    return QString::fromLatin1(QMetaEnum::fromType<StatusRole>().valueToKey(static_cast<int>(role)));
}

} // namespace

UnattendedRun::UnattendedRun(AppModel &model, QQuickWindow &window, QString picture)
    : _model(model), _window(window), _picture(std::move(picture)) {
    connect(&_model, &AppModel::startupErrorChanged, this, &UnattendedRun::goOn);
    connect(&_model, &AppModel::libraryChanged, this,
            [this] { connect(_model.library(), &LibraryStore::loadStateChanged, this, &UnattendedRun::goOn); });
    connect(_model.sync(), &SyncStore::phaseChanged, this, &UnattendedRun::goOn);
    connect(_model.sync(), &SyncStore::bannerChanged, this, &UnattendedRun::goOn);
    _patience.callOnTimeout(this, [this] { giveUp(u"The run did not end in time."_s); });
    _patience.start(patience);
}

void UnattendedRun::goOn() {
    if (_step == Step::Ended)
        return;
    if (_model.startupError()) {
        giveUp(*_model.startupError());
        return;
    }
    if (_step == Step::Waiting) {
        const auto &loadState = _model.library()->loadState();
        if (const auto *failed = std::get_if<LoadState::Failed>(&loadState.value))
            giveUp(failed->text);
        else if (loadState == LoadState::loaded())
            begin();
        return;
    }
    const auto &banner = _model.sync()->banner();
    switch (_model.sync()->phase()) {
    case SyncPhase::done:
        end();
        break;
    case SyncPhase::interrupted:
    case SyncPhase::cancelled:
        giveUp(banner ? banner->message : u"The run was cut short."_s);
        break;
    case SyncPhase::preparing:
        // A run that the engine refuses never leaves this phase; the banner says why.
        if (banner && banner->kind == SyncBanner::Kind::error)
            giveUp(banner->message);
        break;
    case SyncPhase::idle:
    case SyncPhase::running:
    case SyncPhase::finishing:
        break;
    }
}

void UnattendedRun::begin() {
    _step = Step::Running;
    QSet<QString> all;
    for (const auto &playlist : _model.library()->playlists()) {
        if (playlist.isFolder)
            continue;
        all.insert(playlist.id);
        print(u"Playlist: %1 (%2)"_s.arg(playlist.name).arg(playlist.trackCount.value_or(0)));
    }
    if (all.isEmpty()) {
        giveUp(u"There are no playlists to sync."_s);
        return;
    }
    // What was said before this run is no word about it.
    _model.sync()->dismissBanner();
    _model.library()->setSelection(all);
    _model.selectionChanged();
    _model.startSync();
}

void UnattendedRun::end() {
    _step = Step::Ended;
    _patience.stop();
    QTimer::singleShot(settling, this, [this] {
        printRows();
        const auto summary = _model.sync()->summary().value_or(SyncSummary());
        print(u"Summary: %1 done, %2 on disk, %3 flagged, %4 failed, %5 skipped"_s.arg(summary.ok)
                  .arg(summary.present)
                  .arg(summary.flagged)
                  .arg(summary.failed)
                  .arg(summary.skipped));
        if (!_picture.isEmpty() && !_window.grabWindow().save(_picture)) {
            giveUp(u"The picture could not be written to %1"_s.arg(_picture));
            return;
        }
        QCoreApplication::exit(0);
    });
}

void UnattendedRun::giveUp(const QString &why) {
    _step = Step::Ended;
    print(why);
    QCoreApplication::exit(1);
}

void UnattendedRun::printRows() const {
    const auto *groups = _model.sync()->groups();
    for (int g = 0; g < groups->count(); ++g) {
        const auto *group = groups->at(g);
        print(u"%1:"_s.arg(group->name()));
        for (int row = 0; row < group->total(); ++row) {
            const auto *track = group->track(row);
            print(u"  %1  %2 - %3"_s.arg(nameOf(track->statusRole()), -8).arg(track->dto().artist, track->dto().title));
        }
    }
}

} // namespace zelk
