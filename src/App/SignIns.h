#pragma once

#include <QCoroTask>
#include <QObject>
#include <QPointer>

#include <functional>
#include <set>

namespace zelk {

class AppModel;

/// The sign-ins under way, wherever in the windows they were begun: at most one of each kind at a time, for a second
/// one would ask the user the same again. They go on when what began them has gone.
class SignIns final : public QObject {
    Q_OBJECT

public:
    enum class Kind {
        appleMusic,
        spotify,
        localLibrary, ///< the user's own music library on this machine
    };
    /// What belongs to a sign-in after it, for whoever began it.
    using Then = std::function<QCoro::Task<>(AppModel &model)>;

    explicit SignIns(AppModel *model);

    bool isUnderWay(Kind kind) const { return _underWay.contains(kind); }
    /// Does nothing while one of that kind is under way. What came of it shows in the model's stores.
    void begin(Kind kind, Then then = {});

Q_SIGNALS:
    void changed();
    void ended(zelk::SignIns::Kind kind);

private:
    void end(Kind kind);

    AppModel *const _model; // which this is a part of
    std::set<Kind> _underWay;
};

} // namespace zelk
