#pragma once

#include <QtGlobal>

#include <memory>

class QDBusConnection;

namespace zelk {

/// A bar of progress on the application's entry in the desktop's task bar or dock, where that has one.
class TaskBarProgress {
public:
    /// That of this session.
    static std::unique_ptr<TaskBarProgress> ofSession();
    /// The one that listens on that bus, which may be none.
    static std::unique_ptr<TaskBarProgress> on(const QDBusConnection &bus);

    TaskBarProgress() = default;
    virtual ~TaskBarProgress() = default;
    Q_DISABLE_COPY_MOVE(TaskBarProgress)

    /// Shows how much is done, from 0 to 1. Returns at once and fails silently.
    virtual void show(double fraction) = 0;
    virtual void clear() = 0;
};

} // namespace zelk
