#pragma once

#include "engine/EngineHome.h"

#include <QJsonArray>
#include <QSet>

#include <optional>

namespace zelk::engine::testing {

/// Whether this is built with sanitizers, with which each life of an engine takes many times as long.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif
#else
inline constexpr bool sanitized = false;
#endif

/// A library in which everything happens that a run can do, an engine that goes through it as the application would,
/// and what must hold after it was killed on the way.
class CrashScene {
public:
    enum class Extent {
        OneOfEach, ///< One file copied, one converted, one decided on at once and one later.
        Many,      ///< More of all, and names that collide.
    };
    explicit CrashScene(Extent extent);

    EngineHome &home() { return _home; }
    /// Starts from nothing written and nothing remembered.
    void reset();

    /// What one life of an engine told before it ended.
    struct Life {
        QList<QJsonObject> events;
        QSet<QString> asked;   ///< Tracks for which a decision was asked.
        QSet<QString> decided; ///< Tracks whose decision the engine has read, as its answer to a later request shows.
        bool done = false;     ///< The run ended, and all decisions were carried out.
    };
    /// Syncs everything, deciding on one doubtful track at once and on the other after the run, until all is done or
    /// `killNow` says so. That is asked after each line, and at least every few milliseconds.
    Life live(const QProcessEnvironment &extra, const std::function<bool(const Life &life)> &killNow);

    /// Syncs again after `life` was killed and decides on what is asked again. Returns what is wrong, or an empty text.
    QString recover(const Life &life);

    /// The folder as it is after a run that nobody disturbed.
    const QMap<QString, QByteArray> &expected() const { return _expected; }
    /// How long that run took, from the start of the engine.
    qint64 undisturbedMs() const { return _undisturbedMs; }
    /// All that it told.
    const QList<QJsonObject> &undisturbed() const { return _undisturbed; }

private:
    QByteArray decisionOn(const QJsonObject &review) const;

    EngineHome _home;
    QProcessEnvironment _environment;
    QJsonArray _selection;
    QMap<QString, QByteArray> _expected;
    QList<QJsonObject> _undisturbed;
    qint64 _undisturbedMs = 0;
};

} // namespace zelk::engine::testing
