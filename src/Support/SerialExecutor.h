#pragma once

#include <QEvent>
#include <QString>

#include <memory>
#include <type_traits>
#include <utility>

class QThread;

namespace zelk {

/// A thread with a queue, named after what it serves: jobs run one after the other in the order of their posting, on an
/// event loop, so that notifiers and timers work there too. It is the only way across threads in this program.
///
/// The thread lives as long as somebody holds its executor, runs the jobs posted until then, and ends. A registry owns
/// the threads themselves and joins them, so that the last holder may be a job of the thread itself.
class SerialExecutor {
public:
    using Ref = std::shared_ptr<SerialExecutor>;

    /// Starts a thread of that name.
    static Ref make(const QString &name);
    /// The main thread's. The application object must exist.
    static Ref main();
    /// That of the calling thread; null on a thread that is none of ours.
    static Ref current();
    /// Ends all threads and waits for each a second at most: one that is stuck is left behind rather than waited for.
    /// The end of the application object calls it; `make` must not be called after that.
    static void stopAll();

    ~SerialExecutor();
    Q_DISABLE_COPY_MOVE(SerialExecutor)

    /// Queues `job`. Once the thread has ended the job is destroyed instead, and whatever it promised fails with what
    /// the promise holds ready for that.
    template<typename Job>
    void post(Job &&job) {
        postEvent(std::make_unique<JobOf<std::decay_t<Job>>>(std::forward<Job>(job)));
    }

    bool isCurrent() const;

    class JobEvent : public QEvent {
    public:
        JobEvent();
        virtual void run() = 0;
    };
    class Loop;

private:
    template<typename Job>
    class JobOf final : public JobEvent {
    public:
        explicit JobOf(Job &&job) : _job(std::move(job)) {}
        explicit JobOf(const Job &job) : _job(job) {}
        void run() override { _job(); }

    private:
        Job _job;
    };

    explicit SerialExecutor(std::shared_ptr<Loop> loop);
    void postEvent(std::unique_ptr<JobEvent> event);

    std::shared_ptr<Loop> _loop;
};

} // namespace zelk
