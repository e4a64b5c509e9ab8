#pragma once

#include "State/EngineStore.h"

#include <QSet>
#include <QStringList>

namespace zelk {

/// Files of the library that no selected playlist holds any more. The engine finds them and moves them to the Trash;
/// this store never touches the file system.
class OrphansStore final : public EngineStore {
    Q_OBJECT
    /// In the order of their discovery, without repeats.
    Q_PROPERTY(QStringList paths READ paths NOTIFY pathsChanged)
    /// The user chose to keep them for now.
    Q_PROPERTY(bool dismissed READ dismissed WRITE setDismissed NOTIFY dismissedChanged)
    /// There are some, and the user has not waved them away.
    Q_PROPERTY(bool hasOrphans READ hasOrphans NOTIFY hasOrphansChanged)

public:
    explicit OrphansStore(std::shared_ptr<HelperClienting> client, QObject *parent = nullptr);

    const QStringList &paths() const { return _paths; }
    bool dismissed() const { return _dismissed; }
    bool hasOrphans() const { return !_paths.isEmpty() && !_dismissed; }
    void setDismissed(bool dismissed);

    /// Adds those that are not known yet. A dismissal stays.
    void accumulate(const QStringList &paths);
    /// Forgets paths and dismissal; the last failure stays.
    void reset();
    /// Replaces the paths by what the engine finds for that selection, and takes a dismissal back.
    QCoro::Task<> listOrphans(std::vector<PlaylistSelection> selection);
    /// Moves the files to the Trash, all or nothing as far as is known here. Named `trashPaths` for QML.
    QCoro::Task<> trash(QStringList paths);
    Q_INVOKABLE void trashPaths(const QStringList &paths);

Q_SIGNALS:
    void pathsChanged();
    void dismissedChanged();
    void hasOrphansChanged();

private:
    void set(QStringList paths, bool dismissed);
    void tellHasOrphans();

    QStringList _paths;
    QSet<QString> _known; // the paths, so that a library of orphans is not walked for each event
    bool _dismissed = false;
    bool _toldHasOrphans = false; // a listener may change the paths again before it is told
};

} // namespace zelk
