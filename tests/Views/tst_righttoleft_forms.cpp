#include "FormStates.h"
#include "Mirror.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// Turns the layout round in each state, and collects what then stands at a wrong place.
class Faults {
public:
    FormStates::Look look() {
        return [this](QQuickWindow *window, const char *state) {
            ++seen;
            const auto before = Mirror::lookAt(window);
            const Mirrored mirrored;
            settleDown();
            window->grabWindow();
            for (const QString &each : Mirror::faults(before, Mirror::lookAt(window), window->width()))
                found += QLatin1StringView(state) + u": "_s + each;
        };
    }
    ~Faults() {
        for (const QString &each : std::as_const(found))
            qWarning("%s", qPrintable(each));
    }

    QStringList found;
    int seen = 0;
};

} // namespace

class FormRightToLeftTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:.*"_s)); }
    void cleanup() { settleDown(); }

    void everythingInTheSetupStandsOnTheOtherSide() {
        SetupWindow bench;
        Faults faults;
        FormStates::ofSetup(bench, faults.look());
        QCOMPARE(faults.found, QStringList());
        QCOMPARE(faults.seen, 10);
    }

    void everythingInTheSettingsStandsOnTheOtherSide() {
        SettingsBench bench(FormStates::everything(false));
        Faults faults;
        FormStates::ofSettings(bench, faults.look());
        QCOMPARE(faults.found, QStringList());
        QCOMPARE(faults.seen, 11);
    }

    void aSwitchIsOnWhereTheTextEnds() {
        SettingsBench bench(FormStates::everything(false));
        const auto knob = [&bench] {
            const QQuickItem *toggle = bench.item("automaticallyChecks");
            double furthest = 0;
            for (const QQuickItem *each : SettingsBench::itemsOf(bench.item("automaticallyChecks"),
                                                                 [](QQuickItem *item) { return item->width() == 16; }))
                furthest = each->mapToItem(toggle, QPointF(8, 0)).x() / toggle->width();
            return furthest;
        };
        QCOMPARE(SettingsBench::isOn(bench.item("automaticallyChecks")), knob() > 0.5);
        const Mirrored mirrored;
        settleDown();
        QTRY_COMPARE(SettingsBench::isOn(bench.item("automaticallyChecks")), knob() < 0.5);
    }

    void theArrowsGoAlongTheTabsAsTheyStand() {
        const Mirrored mirrored;
        SettingsBench bench(FormStates::everything(false));
        bench.key(Qt::Key_Left);
        QVERIFY(bench.items("settingsTab").at(1)->property("current").toBool());
        bench.key(Qt::Key_Right);
        QVERIFY(bench.items("settingsTab").at(0)->property("current").toBool());
    }
};

QTEST_MAIN(FormRightToLeftTest)
#include "tst_righttoleft_forms.moc"
