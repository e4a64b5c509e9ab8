#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

class QDBusConnection;

namespace zelk {

/// Which of several starts over the same configuration has the window. Whoever claims first keeps the place until its
/// process ends, however that comes about; a later claim calls it to the front instead.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Claim {
        first,      // the place is ours
        answered,   // another has it and has come to the front
        unanswered, // another has it and says nothing; the place is ours as soon as that one goes
        none,       // there is no bus that could say
    };

    /// How long another instance may take to come to the front.
    static constexpr std::chrono::milliseconds usualPatience{5000};

    using QObject::QObject;

    /// That of this session, for a configuration folder, which needn't exist yet. By whatever way the folder is named,
    /// it is the same place.
    static std::unique_ptr<SingleInstance> ofSession(const QString &configurationFolder);
    static std::unique_ptr<SingleInstance> on(const QDBusConnection &bus, const QString &configurationFolder,
                                              std::chrono::milliseconds patience);

    /// Waits for an answer, for at most the patience. `activationToken` is what the desktop gave this start so that a
    /// window may come to the front; it may be empty.
    virtual Claim claim(const QString &activationToken) = 0;

Q_SIGNALS:
    /// Another start wants the window; the token is that start's, or empty.
    void calledToFront(const QString &activationToken);
};

} // namespace zelk
