#include "Support/AsyncStream.h"
#include "Support/OneShot.h"
#include "Support/Task.h"

#include <QPointer>
#include <QTest>
#include <QTimer>

#include <numeric>
#include <thread>

using namespace zelk;

namespace {

/// Reads a stream to its end, on the thread that it is made on.
class Listener : public QObject {
public:
    explicit Listener(AsyncStream<int>::Reader reader) {
        handle = startTask(this, [self = QPointer(this), reader](std::stop_token stop) -> QCoro::Task<> {
            bool wasCancelled = false;
            try {
                while (true) {
                    const auto element = co_await reader.next(stop);
                    if (!element)
                        break;
                    self->taken.append(*element);
                    if (self->onElement)
                        self->onElement(*element);
                }
            } catch (const Cancelled &) {
                wasCancelled = true;
            }
            if (self)
                (wasCancelled ? self->cancelled : self->ended) = true;
        });
    }

    TaskHandle handle;
    QList<int> taken;
    bool ended = false;
    bool cancelled = false;
    std::function<void(int)> onElement;
};

QList<int> upTo(int count) {
    QList<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

} // namespace

class TestAsyncStream : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void elementsArriveWholeAndInOrder() {
        const AsyncStream<int> stream;
        Listener listener(stream.reader());
        for (int i = 0; i < 1000; ++i)
            stream.push(i);
        QTRY_COMPARE(listener.taken, upTo(1000));
        QVERIFY(!listener.ended);
    }

    void whatWasPushedBeforeAnybodyReadIsNotLost() {
        const AsyncStream<int> stream;
        stream.push(1);
        stream.push(std::vector{2, 3});
        Listener listener(stream.reader());
        QTRY_COMPARE(listener.taken, (QList{1, 2, 3}));
    }

    void theEndComesAfterTheLastElement() {
        const AsyncStream<int> stream;
        Listener listener(stream.reader());
        stream.push(1);
        stream.finish();
        stream.push(2);
        QTRY_VERIFY(listener.ended);
        QCOMPARE(listener.taken, QList{1});
    }

    void theReleaseOfTheWritingEndFinishesTheStream() {
        std::optional<AsyncStream<int>> stream(std::in_place);
        Listener listener(stream->reader());
        stream->push(7);
        stream.reset();
        QTRY_VERIFY(listener.ended);
        QCOMPARE(listener.taken, QList{7});
    }

    void manyThreadsMayWriteAndEachOnesOrderIsKept() {
        const AsyncStream<int> stream;
        Listener listener(stream.reader());
        constexpr int perThread = 20000;
        std::vector<std::jthread> writers;
        for (int writer = 0; writer < 4; ++writer)
            writers.emplace_back([&stream, writer] {
                for (int i = 0; i < perThread; ++i)
                    stream.push(writer * perThread + i);
            });
        QTRY_COMPARE_WITH_TIMEOUT(listener.taken.size(), 4 * perThread, 20000);
        std::array<int, 4> last{-1, -1, -1, -1};
        for (const int element : std::as_const(listener.taken)) {
            auto &before = last.at(static_cast<size_t>(element / perThread));
            QVERIFY(element > before);
            before = element;
        }
    }

    void aBurstGivesTheEventLoopItsTurns() {
        const AsyncStream<int> stream;
        Listener listener(stream.reader());
        listener.onElement = [](int) { QTest::qSleep(1); };
        QList<qsizetype> takenAtTick;
        QTimer ticker;
        ticker.callOnTimeout([&] { takenAtTick.append(listener.taken.size()); });
        ticker.start(0);
        constexpr int burst = 100;
        stream.push(std::vector<int>(burst, 0));
        QTRY_COMPARE(listener.taken.size(), burst);
        const auto during = std::count_if(takenAtTick.cbegin(), takenAtTick.cend(),
                                          [](auto taken) { return taken > 0 && taken < burst; });
        QVERIFY2(during >= 3, qPrintable(QString::number(during)));
    }

    void aCancelledWaitEndsWithoutAnElement() {
        const AsyncStream<int> stream;
        Listener listener(stream.reader());
        QTest::qWait(1);
        listener.handle.cancel();
        QTRY_VERIFY(listener.cancelled);
        stream.push(1);
        QTest::qWait(5);
        QVERIFY(listener.taken.isEmpty());
    }

    void aCancelledReaderTakesNothingThatWaits() {
        const AsyncStream<int> stream;
        Listener listener(stream.reader());
        stream.push(std::vector{1, 2, 3});
        listener.onElement = [&](int) { listener.handle.cancel(); };
        QTRY_VERIFY(listener.cancelled);
        QCOMPARE(listener.taken, QList{1});
    }

    void aCancellationFromAnotherThreadEndsTheWaitOnTheReadersOwn() {
        const AsyncStream<int> stream;
        Listener listener(stream.reader());
        QTest::qWait(1);
        const std::jthread other([handle = listener.handle]() mutable { handle.cancel(); });
        QTRY_VERIFY(listener.cancelled);
    }

    void anExecutorsThreadMayBeTheReader() {
        const AsyncStream<int> stream;
        const auto executor = SerialExecutor::make(QStringLiteral("reader"));
        const auto listener = std::make_shared<std::unique_ptr<Listener>>();
        const auto done = std::make_shared<OneShot<void>>(std::make_exception_ptr(Cancelled()));
        executor->post([&, done, listener] {
            *listener = std::make_unique<Listener>(stream.reader());
            (*listener)->onElement = [&executor, done](int element) {
                if (element == 999 && executor->isCurrent())
                    done->fulfil();
            };
        });
        for (int i = 0; i < 1000; ++i)
            stream.push(i);
        done->future().waitForFinished();
        const auto released = std::make_shared<OneShot<void>>(std::make_exception_ptr(Cancelled()));
        executor->post([released, listener] {
            listener->reset();
            released->fulfil();
        });
        released->future().waitForFinished();
    }

    void whatGatheredCanBeTakenWithoutWaiting() {
        const AsyncStream<int> stream;
        const auto reader = stream.reader();
        stream.push(std::vector{1, 2, 3});
        QCOMPARE(reader.takeGathered(), (std::vector{1, 2, 3}));
        QVERIFY(reader.takeGathered().empty());
    }
};

QTEST_GUILESS_MAIN(TestAsyncStream)
#include "tst_asyncstream.moc"
