#include "Support/OneShot.h"
#include "Support/SerialExecutor.h"

#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <stdexcept>
#include <thread>

using namespace zelk;

namespace {

std::exception_ptr gone() {
    return std::make_exception_ptr(std::runtime_error("gone"));
}

} // namespace

class TestSerialExecutor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void jobsRunOneAfterTheOtherInTheOrderOfTheirPosting() {
        const auto executor = SerialExecutor::make(QStringLiteral("test"));
        QList<int> order;
        const auto done = std::make_shared<OneShot<void>>(gone());
        for (int i = 0; i < 1000; ++i)
            executor->post([&order, i] { order.append(i); });
        executor->post([done] { done->fulfil(); });
        done->future().waitForFinished();
        QCOMPARE(order.size(), 1000);
        QVERIFY(std::is_sorted(order.cbegin(), order.cend()));
    }

    void theThreadIsNamedAfterWhatItServes() {
        const auto executor = SerialExecutor::make(QStringLiteral("orrim.zelk.test"));
        const auto name = std::make_shared<OneShot<QString>>(gone());
        executor->post([name] { name->fulfil(QThread::currentThread()->objectName()); });
        QCOMPARE(name->future().result(), QStringLiteral("orrim.zelk.test"));
    }

    void aJobKnowsItsExecutorAndTheMainThreadIsOneToo() {
        const auto executor = SerialExecutor::make(QStringLiteral("test"));
        const auto inside = std::make_shared<OneShot<bool>>(gone());
        executor->post(
            [inside, &executor] { inside->fulfil(executor->isCurrent() && !SerialExecutor::main()->isCurrent()); });
        QVERIFY(inside->future().result());
        QVERIFY(!executor->isCurrent());
        QVERIFY(SerialExecutor::main()->isCurrent());
        QCOMPARE(SerialExecutor::current(), SerialExecutor::main());
    }

    void aForeignThreadHasNoExecutor() {
        bool none = false;
        std::thread([&] { none = !SerialExecutor::current(); }).join();
        QVERIFY(none);
    }

    void whatWasPostedBeforeTheReleaseStillRuns() {
        auto executor = SerialExecutor::make(QStringLiteral("test"));
        const auto ran = std::make_shared<OneShot<int>>(gone());
        for (int i = 0; i < 100; ++i)
            executor->post([ran, i] {
                if (i == 99)
                    ran->fulfil(i);
            });
        executor.reset();
        QCOMPARE(ran->future().result(), 99);
    }

    void aJobFindsItsExecutorAfterTheLastHolderHasGone() {
        auto executor = SerialExecutor::make(QStringLiteral("test"));
        const auto mayGoOn = std::make_shared<OneShot<void>>(gone());
        const auto found = std::make_shared<OneShot<bool>>(gone());
        executor->post([found, future = mayGoOn->future()]() mutable {
            future.waitForFinished();
            const auto current = SerialExecutor::current();
            found->fulfil(current && current->isCurrent());
        });
        executor.reset();
        mayGoOn->fulfil();
        QVERIFY(found->future().result());
    }

    void whoeverFindsTheExecutorAfterTheLastHolderHasGoneKeepsTheThread() {
        auto executor = SerialExecutor::make(QStringLiteral("test"));
        const auto mayGoOn = std::make_shared<OneShot<void>>(gone());
        const auto found = std::make_shared<OneShot<SerialExecutor::Ref>>(gone());
        QSemaphore ended;
        executor->post([found, &ended, future = mayGoOn->future()]() mutable {
            future.waitForFinished();
            QObject::connect(QThread::currentThread(), &QThread::finished, [&ended] { ended.release(); });
            found->fulfil(SerialExecutor::current());
        });
        executor.reset();
        mayGoOn->fulfil();
        auto kept = found->future().takeResult();
        for (int i = 0; i < 20; ++i) {
            auto ran = std::make_shared<OneShot<int>>(gone());
            const auto future = ran->future();
            kept->post([ran = std::move(ran), i] { ran->fulfil(i); });
            QCOMPARE(future.result(), i);
        }
        QCOMPARE(ended.available(), 0);
        kept.reset();
        ended.acquire(); // only then is the thread let go
    }

    void theLastHolderMayBeAJobOfTheThreadItself() {
        auto executor = SerialExecutor::make(QStringLiteral("test"));
        const auto ran = std::make_shared<OneShot<void>>(gone());
        auto future = ran->future();
        executor->post([held = executor, ran]() mutable {
            held.reset();
            ran->fulfil();
        });
        executor.reset();
        future.waitForFinished();
    }

    void aJobPostedToAnEndedThreadIsReleasedAndItsPromiseFails() {
        auto executor = SerialExecutor::make(QStringLiteral("test"));
        SerialExecutor::stopAll();
        auto promise = std::make_shared<OneShot<int>>(gone());
        auto future = promise->future();
        executor->post([promise = std::move(promise)] { promise->fulfil(1); });
        QVERIFY(future.isFinished());
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, future.result());
    }

    void aPromiseIsKeptOnce() {
        OneShot<int> promise(gone());
        QVERIFY(promise.fulfil(1));
        QVERIFY(!promise.fulfil(2));
        QVERIFY(!promise.fail(gone()));
        QCOMPARE(promise.future().result(), 1);
    }

    void aPromiseReleasedUnkeptFailsWithWhatItHoldsReady() {
        auto promise = std::make_unique<OneShot<void>>(gone());
        auto future = promise->future();
        promise.reset();
        QVERIFY(future.isFinished());
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, future.waitForFinished());
    }

    void stoppingWaitsForNoThreadThatIsStuck() {
        const auto stuck = SerialExecutor::make(QStringLiteral("stuck"));
        const auto isStuck = std::make_shared<OneShot<void>>(gone());
        const auto mayGoOn = std::make_shared<OneShot<void>>(gone());
        stuck->post([isStuck, future = mayGoOn->future()]() mutable {
            isStuck->fulfil();
            future.waitForFinished();
        });
        isStuck->future().waitForFinished();
        SerialExecutor::stopAll();
        QVERIFY(mayGoOn->fulfil());
    }
};

QTEST_GUILESS_MAIN(TestSerialExecutor)
#include "tst_serialexecutor.moc"
