#include "Support/SerialExecutor.h"

#include <QCoreApplication>
#include <QObject>
#include <QThread>

#include <algorithm>
#include <mutex>
#include <vector>

// The thread sanitizer doesn't see into Qt's event queue, so it is told what the queue guarantees: what happened before
// the posting of a job happened before its run.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
extern "C" void __tsan_acquire(void *address);
extern "C" void __tsan_release(void *address);
#define ZELK_HANDED_OVER(address) __tsan_release(address)
#define ZELK_TAKEN_OVER(address) __tsan_acquire(address)
#endif
#endif
#ifndef ZELK_HANDED_OVER
#define ZELK_HANDED_OVER(address)
#define ZELK_TAKEN_OVER(address)
#endif

namespace zelk {

namespace {

QEvent::Type jobEventType() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

constexpr auto patienceAtExitMs = 1000;

/// Lives in the executor's thread and runs what is posted to it.
class Runner final : public QObject {
public:
    bool event(QEvent *event) override {
        ZELK_TAKEN_OVER(event);
        if (event->type() != jobEventType())
            return QObject::event(event);
        static_cast<SerialExecutor::JobEvent *>(event)->run();
        return true;
    }
};

} // namespace

SerialExecutor::JobEvent::JobEvent() : QEvent(jobEventType()) {}

/// What executor, thread and registry share: the runner while the thread takes jobs, and the thread itself.
class SerialExecutor::Loop {
public:
    void post(std::unique_ptr<JobEvent> event) {
        const std::scoped_lock lock(_mutex);
        if (_runner) {
            ZELK_HANDED_OVER(event.get());
            QCoreApplication::postEvent(_runner, event.release());
        }
        // Otherwise the event is destroyed here, and its promises with it.
    }

    void open(QObject *runner) {
        const std::scoped_lock lock(_mutex);
        _runner = runner;
    }

    /// Takes no more jobs; those that did not run are destroyed with the runner, outside of the lock.
    void close() {
        QObject *runner = nullptr;
        {
            const std::scoped_lock lock(_mutex);
            std::swap(runner, _runner);
        }
        delete runner;
    }

    void enter() { ++_executors; }

    /// The end of one executor. A job that it left behind may have found the next, so that only the last one's end,
    /// behind all that they posted, ends the thread.
    void leaveBehindTheQueue() {
        postJob([this] {
            if (--_executors == 0)
                thread->quit();
        });
    }

    void quitBehindTheQueue() {
        postJob([this] { thread->quit(); });
    }

    QThread *thread = nullptr; // none for the main thread, which isn't ours to end

private:
    template<typename Job>
    void postJob(Job job) {
        post(std::make_unique<JobOf<Job>>(std::move(job)));
    }

    int _executors = 0; // the first counted before the thread starts, all that come and go on the thread itself
    std::mutex _mutex;
    QObject *_runner = nullptr;
};

namespace {

thread_local std::shared_ptr<SerialExecutor::Loop> currentLoop;
thread_local std::weak_ptr<SerialExecutor> currentExecutor;

class Registry {
public:
    static Registry &instance() {
        static Registry registry;
        return registry;
    }

    ~Registry() { stopAll(); }

    void add(const std::shared_ptr<SerialExecutor::Loop> &loop) {
        // Event loops must not outlive the application object.
        static std::once_flag once;
        std::call_once(once, [] { qAddPostRoutine(SerialExecutor::stopAll); });
        reap();
        const std::scoped_lock lock(_mutex);
        _loops.push_back(loop);
    }

    void stopAll() {
        std::vector<std::shared_ptr<SerialExecutor::Loop>> loops;
        {
            const std::scoped_lock lock(_mutex);
            loops.swap(_loops);
        }
        for (const auto &loop : loops)
            loop->quitBehindTheQueue();
        // What is left behind still runs, so it is kept for as long as the process lives.
        static auto *const leftBehind = new std::vector<std::shared_ptr<SerialExecutor::Loop>>;
        for (const auto &loop : loops) {
            if (loop->thread != QThread::currentThread() && loop->thread->wait(patienceAtExitMs))
                delete loop->thread;
            else
                leftBehind->push_back(loop);
        }
    }

private:
    void reap() {
        const std::scoped_lock lock(_mutex);
        std::erase_if(_loops, [](const auto &loop) {
            if (!loop->thread->isFinished())
                return false;
            loop->thread->wait();
            delete loop->thread;
            return true;
        });
    }

    std::mutex _mutex;
    std::vector<std::shared_ptr<SerialExecutor::Loop>> _loops;
};

} // namespace

SerialExecutor::SerialExecutor(std::shared_ptr<Loop> loop) : _loop(std::move(loop)) {
    _loop->enter();
}

SerialExecutor::Ref SerialExecutor::make(const QString &name) {
    auto loop = std::make_shared<Loop>();
    Ref executor(new SerialExecutor(loop));

    auto *runner = new Runner;
    auto *thread = QThread::create([loop, executor = std::weak_ptr(executor)] {
        currentLoop = loop;
        currentExecutor = executor;
        QEventLoop().exec();
        loop->close();
    });
    thread->setObjectName(name);
    loop->thread = thread;
    runner->moveToThread(thread);
    loop->open(runner);
    Registry::instance().add(loop);
    thread->start();
    return executor;
}

SerialExecutor::Ref SerialExecutor::main() {
    // Kept to the end of the process and beyond: what is released last may still post to it.
    static const Ref *const executor = [] {
        auto loop = std::make_shared<Loop>();
        const auto *made = new Ref(new SerialExecutor(loop));
        auto *runner = new Runner;
        runner->moveToThread(QCoreApplication::instance()->thread());
        loop->open(runner);
        return made;
    }();
    return *executor;
}

SerialExecutor::Ref SerialExecutor::current() {
    if (auto executor = currentExecutor.lock())
        return executor;
    if (currentLoop) {
        // Its last holder has gone and the end is queued; until then its jobs still find an executor.
        Ref executor(new SerialExecutor(currentLoop));
        currentExecutor = executor;
        return executor;
    }
    const auto *application = QCoreApplication::instance();
    if (application && QThread::currentThread() == application->thread())
        return main();
    return nullptr;
}

void SerialExecutor::stopAll() {
    Registry::instance().stopAll();
}

SerialExecutor::~SerialExecutor() {
    if (_loop->thread)
        _loop->leaveBehindTheQueue();
}

bool SerialExecutor::isCurrent() const {
    const auto here = current();
    return here && here->_loop == _loop;
}

void SerialExecutor::postEvent(std::unique_ptr<JobEvent> event) {
    _loop->post(std::move(event));
}

} // namespace zelk
