#pragma once

#include "Platform/Bundle.h"
#include "State/CLIToolPlaces.h"
#include "State/CLIToolState.h"

#include <QObject>
#include <QProcessEnvironment>

#include <functional>
#include <optional>

namespace zelk {

/// Knows how the command-line tool stands: what is found where the command `zelk` is looked for. It reads and never
/// writes; whoever installs or removes the tool calls `detect()` afterwards.
class CLIToolStore final : public QObject {
    Q_OBJECT
    Q_PROPERTY(zelk::StateEnums::CLIToolKind kind READ kind NOTIFY stateChanged)
    // Of the state; empty where it has none.
    Q_PROPERTY(QString target READ target NOTIFY stateChanged)
    Q_PROPERTY(QString path READ path NOTIFY stateChanged)
    Q_PROPERTY(QString version READ version NOTIFY stateChanged)
    /// Empty when there is none.
    Q_PROPERTY(QString detectedVersion READ detectedVersionText NOTIFY detectedVersionChanged)

public:
    using State = CLIToolState;
    /// The path of the engine that a link of ours points at; none where there is no engine.
    using PreferredTarget = std::function<std::optional<QString>()>;

    CLIToolStore(CLIToolPlaces places, PreferredTarget preferredTarget, QObject *parent = nullptr);

    /// The engine of that bundle, or the one that the environment names.
    static std::optional<QString> engineOf(const Bundle &bundle, const QProcessEnvironment &environment);

    const State &state() const { return _state; }
    /// What the installed tool says of itself, where somebody has asked it: `detect()` doesn't.
    const std::optional<QString> &detectedVersion() const { return _detectedVersion; }
    void setDetectedVersion(std::optional<QString> version);
    std::optional<QString> preferredTarget() const { return _preferredTarget(); }

    /// Looks at the two places and sets the state. A link whose target is gone counts as nothing there. Never throws.
    Q_INVOKABLE void detect();

Q_SIGNALS:
    void stateChanged();
    void detectedVersionChanged();

private:
    CLIToolKind kind() const { return _state.kind(); }
    QString target() const { return _state.target(); }
    QString path() const { return _state.path(); }
    QString version() const { return _state.version(); }
    QString detectedVersionText() const { return _detectedVersion.value_or(QString()); }
    State look() const;

    const CLIToolPlaces _places;
    const PreferredTarget _preferredTarget;
    State _state = State::unknown();
    std::optional<QString> _detectedVersion;
};

} // namespace zelk
