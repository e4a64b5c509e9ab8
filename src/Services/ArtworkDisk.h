#pragma once

#include "Support/Clock.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace zelk {

/// The covers' bytes as they came, one file a key, the least recently used removed when they take too much room. Every
/// failure is that of a file that isn't there.
class ArtworkDisk {
public:
    /// Makes the folder. `wallTime` is what files are dated by.
    ArtworkDisk(QString diskDir, std::shared_ptr<Clock> clock, std::function<QDateTime()> wallTime);

    /// The file's bytes; it is the most recently used from then on.
    std::optional<QByteArray> read(const QString &key) const;
    /// Replaces the file as a whole or leaves it as it is.
    void write(const QString &key, const QByteArray &bytes) const;
    /// Once a minute at most.
    void pruneDiskIfNeeded();

    static QString fileName(const QString &key);

private:
    QString path(const QString &key) const;

    const QString _diskDir;
    const std::shared_ptr<Clock> _clock;
    const std::function<QDateTime()> _wallTime;
    std::optional<Clock::Time> _lastPrune;
};

} // namespace zelk
