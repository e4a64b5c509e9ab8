#include "Platform/PrivateBus.h"
#include "Platform/TaskBarProgress.h"
#include "Support/Settle.h"

#include <QDBusConnection>
#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

/// A task bar: hears what any application says of its entry.
class TaskBar : public QObject {
    Q_OBJECT

public:
    struct Update {
        QString application;
        QVariantMap properties;
        bool operator==(const Update &) const = default;
    };

    explicit TaskBar(QDBusConnection bus) {
        QVERIFY(bus.connect({}, {}, u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s, this,
                            SLOT(update(QString, QVariantMap))));
    }

    QList<Update> heard;

private Q_SLOTS:
    void update(const QString &application, const QVariantMap &properties) { heard.append({application, properties}); }
};

class TestTaskBarProgress : public QObject {
    Q_OBJECT

    PrivateBus _bus;

private Q_SLOTS:
    void initTestCase() { _bus.start(); }
    void cleanupTestCase() { _bus.stop(); }
    void cleanup() {
        for (const auto &name : {u"bar"_s, u"teller"_s})
            QDBusConnection::disconnectFromBus(name);
    }

    void theBarHearsHowMuchIsDone() {
        const TaskBar bar(_bus.connection(u"bar"_s));
        const auto progress = TaskBarProgress::on(_bus.connection(u"teller"_s));
        progress->show(0.25);
        progress->clear();
        QTRY_COMPARE(bar.heard.size(), 2);
        const QString entry = u"application://org.orrim.zelk.desktop"_s;
        QCOMPARE(bar.heard.at(0), (TaskBar::Update{entry, {{u"progress"_s, 0.25}, {u"progress-visible"_s, true}}}));
        QCOMPARE(bar.heard.at(1), (TaskBar::Update{entry, {{u"progress"_s, 0.0}, {u"progress-visible"_s, false}}}));
    }

    void withoutABusNothingHappens() {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        const auto session = TaskBarProgress::ofSession();
        const auto none = TaskBarProgress::on(QDBusConnection(u"no such bus"_s));
        for (TaskBarProgress *each : {session.get(), none.get()}) {
            each->show(0.5);
            each->clear();
        }
        settle();
    }
};

QTEST_GUILESS_MAIN(TestTaskBarProgress)
#include "tst_taskbarprogress.moc"
