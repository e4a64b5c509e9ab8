#pragma once

#include "Services/UpdateCheck.h"
#include "Services/UpdateSchedule.h"
#include "Support/Task.h"

#include <QObject>

#include <memory>
#include <optional>

namespace zelk {

/// Looks for a newer version, says what it finds, and downloads it when the user wants it. It installs nothing. Checks
/// that nobody asked for happen at most once a day and speak up only for a new version; one that was asked for always
/// ends with words. There is one check or download at a time. Lives on the main thread.
class AppUpdater final : public QObject {
    Q_OBJECT
    /// Kept in the user's defaults.
    Q_PROPERTY(bool automaticallyChecksForUpdates READ automaticallyChecksForUpdates WRITE
                   setAutomaticallyChecksForUpdates NOTIFY automaticallyChecksForUpdatesChanged)

public:
    explicit AppUpdater(UpdaterSurroundings surroundings, QObject *parent = nullptr);
    ~AppUpdater() override;

    /// Begins to check by itself, as far as that is wanted and the build has a feed.
    void start();

    /// Checks at once. What is under way or waits for an answer is brought before the user instead.
    void checkForUpdates();

    bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool automatically);

Q_SIGNALS:
    void automaticallyChecksForUpdatesChanged();

private:
    enum class Phase { Idle, Checking, Found, Downloading, Ready, Told };

    void followSchedule();
    void checkByItself();
    void begin(bool asked);
    QCoro::Task<> check(std::stop_token stop);
    void checked(std::optional<UpdateOffer> offer);
    void offerUpdate(UpdateOffer offer);
    void download();
    QCoro::Task<> fetch(std::stop_token stop);
    void failed(const std::exception_ptr &failure);
    void answer(UpdateAnswer answer);
    void show(Phase phase, const UpdateScene::Any &scene);
    /// Nothing is under way and nothing shown.
    void putAway();

    const UpdaterSurroundingsRef _surroundings;
    UpdateSchedule _schedule;
    bool _started = false;
    Phase _phase = Phase::Idle;
    bool _asked = false; ///< the user waits for the end of the check
    std::optional<UpdateOffer> _offer;
    QString _file;
    TaskHandle _task;
};

} // namespace zelk
