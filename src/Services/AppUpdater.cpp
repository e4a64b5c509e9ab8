#include "Services/AppUpdater.h"

#include "Services/UpdateDownload.h"
#include "Support/Cancelled.h"
#include "Support/Logger.h"

#include <QPointer>

#include <utility>

namespace zelk {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString automaticKey = u"SUEnableAutomaticChecks"_s;
const QString skippedKey = u"SUSkippedVersion"_s;

bool hasFeed(const UpdaterSurroundings &surroundings) {
    return !surroundings.bundle.info(u"SUFeedURL"_s).toString().isEmpty();
}

/// Nothing for a failure that the user brought about.
std::optional<UpdateProblem> problemOf(const std::exception_ptr &failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const Cancelled &) {
        return std::nullopt;
    } catch (const UpdateError &error) {
        Logger("updates").info(QString::fromUtf8(error.what()));
        return error.problem();
    } catch (const std::exception &error) {
        Logger("updates").error(QString::fromUtf8(error.what()));
        return UpdateProblem::unreachable;
    }
}

} // namespace

AppUpdater::AppUpdater(UpdaterSurroundings surroundings, QObject *parent)
    : QObject(parent), _surroundings(std::make_shared<const UpdaterSurroundings>(std::move(surroundings))),
      _schedule(_surroundings->defaults, _surroundings->clock, _surroundings->wallTime, [this] { checkByItself(); }) {
    _surroundings->driver->answered = [this](UpdateAnswer given) { answer(given); };
}

AppUpdater::~AppUpdater() {
    _surroundings->driver->answered = {};
}

void AppUpdater::start() {
    _started = true;
    followSchedule();
}

void AppUpdater::followSchedule() {
    if (_started && hasFeed(*_surroundings) && automaticallyChecksForUpdates() && !_surroundings->unattended)
        _schedule.start();
    else
        _schedule.stop();
}

bool AppUpdater::automaticallyChecksForUpdates() const {
    const auto chosen = _surroundings->defaults->value(automaticKey);
    return chosen.isValid() ? chosen.toBool()
                            : hasFeed(*_surroundings) && _surroundings->bundle.info(automaticKey).toBool();
}

void AppUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
    const bool before = automaticallyChecksForUpdates();
    _surroundings->defaults->set(automaticKey, automatically);
    if (before == automatically)
        return;
    if (!automatically && _phase == Phase::Checking && !_asked)
        putAway();
    followSchedule();
    Q_EMIT automaticallyChecksForUpdatesChanged();
}

void AppUpdater::checkForUpdates() {
    switch (_phase) {
    case Phase::Idle:
    case Phase::Told:
        begin(true);
        break;
    case Phase::Checking:
        if (std::exchange(_asked, true))
            _surroundings->driver->raise();
        else
            show(Phase::Checking, UpdateScene::Checking());
        break;
    case Phase::Found:
    case Phase::Downloading:
    case Phase::Ready:
        _surroundings->driver->raise();
        break;
    }
}

void AppUpdater::checkByItself() {
    // What is shown at the moment is as good as a check: the next is due in a day.
    if (_phase == Phase::Idle)
        begin(false);
    else
        _schedule.checked();
}

void AppUpdater::begin(bool asked) {
    _asked = asked;
    _phase = Phase::Checking;
    if (hasFeed(*_surroundings)) // or else nobody is asked
        _schedule.checked();
    if (asked)
        show(Phase::Checking, UpdateScene::Checking());
    _task = startTask(this, [this](std::stop_token stop) { return check(std::move(stop)); });
}

QCoro::Task<> AppUpdater::check(std::stop_token stop) {
    const QPointer<AppUpdater> self(this);
    std::optional<UpdateOffer> offer;
    std::exception_ptr failure;
    try {
        auto looking = lookForUpdate(_surroundings, stop);
        offer = co_await looking;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self || stop.stop_requested())
        co_return;
    if (failure)
        failed(failure);
    else
        checked(std::move(offer));
}

void AppUpdater::checked(std::optional<UpdateOffer> offer) {
    const bool skipped = offer && _surroundings->defaults->value(skippedKey).toString() == offer->item.version;
    if (offer && (_asked || !skipped))
        offerUpdate(std::move(*offer));
    else if (_asked)
        show(Phase::Told, UpdateScene::UpToDate{shownVersion(_surroundings->bundle)});
    else
        putAway();
}

void AppUpdater::offerUpdate(UpdateOffer offer) {
    _offer = std::move(offer);
    show(Phase::Found, UpdateScene::Found{.version = _offer->item.shortVersion,
                                          .current = shownVersion(_surroundings->bundle),
                                          .notes = _offer->item.notes,
                                          .delivery = _offer->delivery});
}

void AppUpdater::download() {
    _asked = true;
    show(Phase::Downloading, UpdateScene::Downloading{_offer->item.shortVersion, 0, _offer->item.length});
    _task = startTask(this, [this](std::stop_token stop) { return fetch(std::move(stop)); });
}

QCoro::Task<> AppUpdater::fetch(std::stop_token stop) {
    const QPointer<AppUpdater> self(this);
    const auto progress = [self, stop, version = _offer->item.shortVersion, total = _offer->item.length](qint64 got) {
        if (self && !stop.stop_requested())
            self->show(Phase::Downloading, UpdateScene::Downloading{version, got, total});
    };
    QString file;
    std::exception_ptr failure;
    try {
        auto fetching = downloadUpdate(_surroundings, *_offer, progress, stop);
        file = co_await fetching;
    } catch (...) {
        failure = std::current_exception();
    }
    if (!self || stop.stop_requested())
        co_return;
    if (failure) {
        failed(failure);
        co_return;
    }
    _file = file;
    show(Phase::Ready, UpdateScene::Ready{_offer->item.shortVersion, file});
}

void AppUpdater::failed(const std::exception_ptr &failure) {
    const auto problem = problemOf(failure);
    if (problem && _asked)
        show(Phase::Told, UpdateScene::Failed{*problem});
    else
        putAway();
}

void AppUpdater::answer(UpdateAnswer given) {
    switch (given) {
    case UpdateAnswer::download:
        if (_phase == Phase::Found && _offer->delivery == UpdateDelivery::download)
            download();
        break;
    case UpdateAnswer::skip:
        if (_phase != Phase::Found)
            break;
        _surroundings->defaults->set(skippedKey, _offer->item.version);
        putAway();
        break;
    case UpdateAnswer::later:
        if (_phase == Phase::Found || _phase == Phase::Ready || _phase == Phase::Told)
            putAway();
        break;
    case UpdateAnswer::cancel:
        if (_phase == Phase::Checking || _phase == Phase::Downloading)
            putAway();
        break;
    case UpdateAnswer::showInFolder:
        if (_phase != Phase::Ready)
            break;
        _surroundings->showInFolder(_file);
        putAway();
        break;
    }
}

void AppUpdater::show(Phase phase, const UpdateScene::Any &scene) {
    _phase = phase;
    _surroundings->driver->show(scene);
}

void AppUpdater::putAway() {
    _task.cancel();
    const bool silent = _phase == Phase::Checking && !_asked;
    _asked = false;
    _phase = Phase::Idle;
    if (!silent)
        _surroundings->driver->show(UpdateScene::Nothing());
}

} // namespace zelk
