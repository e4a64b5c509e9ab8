#include "Platform/DesktopSettings.h"
#include "Platform/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QMap>
#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

using ColorScheme = DesktopSettings::ColorScheme;

namespace {

const QString appearance = u"org.freedesktop.appearance"_s;
const QString gnome = u"org.gnome.desktop.interface"_s;
const QString portalService = u"org.freedesktop.portal.Desktop"_s;
constexpr qsizetype keys = 5; // that are asked for
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;

} // namespace

/// What answers for the desktop.
class Portal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(QDBusConnection bus) : _bus(std::move(bus)) {
        _bus.registerObject(portalPath, this, QDBusConnection::ExportAllSlots);
    }
    ~Portal() override { _bus.unregisterObject(portalPath); }

    /// Takes the name, from another one if need be.
    bool appear() {
        return _bus.interface()->registerService(portalService, QDBusConnectionInterface::ReplaceExistingService,
                                                 QDBusConnectionInterface::AllowReplacement) ==
               QDBusConnectionInterface::ServiceRegistered;
    }
    void disappear() { _bus.unregisterService(portalService); }

    void change(const QString &group, const QString &key, const QVariant &value) {
        values[group + u' ' + key] = value;
        auto signal = QDBusMessage::createSignal(portalPath, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        _bus.send(signal);
    }
    void set(const QString &group, const QString &key, const QVariant &value) { values[group + u' ' + key] = value; }

    /// Answers the oldest question that was left open, with what is set now.
    void answerOne() {
        const QDBusMessage question = open.takeFirst();
        const auto key = question.arguments().at(0).toString() + u' ' + question.arguments().at(1).toString();
        _bus.send(question.createReply(QVariant::fromValue(nested(values.value(key)))));
    }

    QMap<QString, QVariant> values;
    QStringList asked;
    QList<QDBusMessage> open;
    bool isSilent = false;
    int nesting = 2;

public Q_SLOTS:
    QDBusVariant Read(const QString &group, const QString &key) {
        asked.append(group + u' ' + key);
        if (isSilent) {
            setDelayedReply(true);
            open.append(message());
            return {};
        }
        if (!values.contains(asked.last())) {
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"Requested setting not found"_s);
            return {};
        }
        return nested(values.value(asked.last()));
    }

private:
    QDBusVariant nested(QVariant value) const {
        for (int i = 1; i < nesting; ++i)
            value = QVariant::fromValue(QDBusVariant(value));
        return QDBusVariant(value);
    }

    QDBusConnection _bus;
};

/// Hears what the portal tells.
class Listener : public QObject {
    Q_OBJECT

public:
    QStringList heard;

public Q_SLOTS:
    void hear(const QString &group) { heard.append(group); }
};

/// Over a bus of its own, on which portal and reader have a connection each.
class TestDesktopSettings : public QObject {
    Q_OBJECT

    PrivateBus _bus;
    std::unique_ptr<Portal> _portal;
    std::unique_ptr<DesktopSettings> _settings;

    void start() { _settings = DesktopSettings::on(_bus.connection(u"reader"_s)); }
    /// Waits until the portal was asked everything and its answers have arrived.
    void settle(Portal &portal) const {
        QTRY_VERIFY(portal.asked.size() >= keys);
        Listener listener;
        auto reader = QDBusConnection(u"reader"_s);
        reader.connect(portalService, portalPath, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s, &listener,
                       SLOT(hear(QString)));
        portal.change(u"test"_s, u"settled"_s, 1u); // goes the same way as the answers, behind them
        QTRY_VERIFY(listener.heard.contains(u"test"_s));
    }
    void settle() const { settle(*_portal); }

private Q_SLOTS:
    void initTestCase() { _bus.start(); }
    void cleanupTestCase() { _bus.stop(); }
    void init() {
        _portal = std::make_unique<Portal>(_bus.connection(u"portal"_s));
        QVERIFY(_portal->appear());
    }
    void cleanup() {
        _settings.reset();
        _portal.reset();
        for (const auto &name : {u"portal"_s, u"reader"_s, u"other"_s})
            QDBusConnection::disconnectFromBus(name);
    }

    void whatTheDesktopSaysIsRead() {
        _portal->set(appearance, u"color-scheme"_s, 1u);
        _portal->set(appearance, u"contrast"_s, 1u);
        _portal->set(appearance, u"reduced-motion"_s, 1u);
        start();
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::dark);
        QTRY_VERIFY(_settings->increasedContrast());
        QTRY_VERIFY(_settings->reducedMotion());
        QVERIFY(!_settings->reducedTransparency());
        QCOMPARE(_portal->asked, (QStringList{appearance + u" color-scheme"_s, appearance + u" contrast"_s,
                                              appearance + u" reduced-motion"_s, gnome + u" enable-animations"_s,
                                              gnome + u" text-scaling-factor"_s}));
    }

    void untilItAnswersNothingIsPreferred() {
        _portal->isSilent = true;
        _portal->set(appearance, u"color-scheme"_s, 1u);
        start();
        QTRY_COMPARE(_portal->open.size(), keys); // the loop turns: this very thread answers
        QCOMPARE(_settings->colorScheme(), ColorScheme::noPreference);
        QVERIFY(!_settings->increasedContrast());
        QVERIFY(!_settings->reducedMotion());
        _portal->answerOne();
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::dark);
    }

    void whoGoesWhileThePortalIsSilentDisturbsNothing() {
        _portal->isSilent = true;
        start();
        QTRY_COMPARE(_portal->open.size(), keys);
        _settings.reset();
        _portal->set(appearance, u"color-scheme"_s, 1u);
        _portal->answerOne();
        start();
        QTRY_COMPARE(_portal->open.size(), 2 * keys - 1);
    }

    void eachValueMeansWhatItMeans_data() {
        QTest::addColumn<QVariant>("scheme");
        QTest::addColumn<ColorScheme>("colorScheme");
        QTest::addColumn<QVariant>("contrast");
        QTest::addColumn<bool>("increased");
        QTest::newRow("nothing") << QVariant() << ColorScheme::noPreference << QVariant() << false;
        QTest::newRow("0") << QVariant(0u) << ColorScheme::noPreference << QVariant(0u) << false;
        QTest::newRow("1") << QVariant(1u) << ColorScheme::dark << QVariant(1u) << true;
        QTest::newRow("2") << QVariant(2u) << ColorScheme::light << QVariant(2u) << false;
        QTest::newRow("3") << QVariant(3u) << ColorScheme::noPreference << QVariant(3u) << false;
        QTest::newRow("text") << QVariant(u"1"_s) << ColorScheme::noPreference << QVariant(u"1"_s) << false;
        QTest::newRow("signed") << QVariant(1) << ColorScheme::noPreference << QVariant(1) << false;
        QTest::newRow("list") << QVariant(QStringList{u"1"_s}) << ColorScheme::noPreference
                              << QVariant(QVariantMap{{u"a"_s, 1}}) << false;
        QTest::newRow("bool") << QVariant(true) << ColorScheme::noPreference << QVariant(true) << false;
    }
    void eachValueMeansWhatItMeans() {
        QFETCH(QVariant, scheme);
        QFETCH(QVariant, contrast);
        if (scheme.isValid())
            _portal->set(appearance, u"color-scheme"_s, scheme);
        if (contrast.isValid())
            _portal->set(appearance, u"contrast"_s, contrast);
        start();
        settle();
        QTEST(_settings->colorScheme(), "colorScheme");
        QTEST(_settings->increasedContrast(), "increased");
    }

    void motionIsAskedForInTwoPlaces_data() {
        QTest::addColumn<QVariant>("reducedMotion");
        QTest::addColumn<QVariant>("enableAnimations");
        QTest::addColumn<bool>("reduced");
        QTest::newRow("neither") << QVariant() << QVariant() << false;
        QTest::newRow("reduced") << QVariant(1u) << QVariant() << true;
        QTest::newRow("not reduced") << QVariant(0u) << QVariant() << false;
        QTest::newRow("no animations") << QVariant() << QVariant(false) << true;
        QTest::newRow("animations") << QVariant() << QVariant(true) << false;
        QTest::newRow("the first decides") << QVariant(0u) << QVariant(false) << false;
        QTest::newRow("the first decides again") << QVariant(1u) << QVariant(true) << true;
        QTest::newRow("the first is no number") << QVariant(u"1"_s) << QVariant(false) << true;
        QTest::newRow("the second is a number") << QVariant() << QVariant(0u) << false;
    }
    void motionIsAskedForInTwoPlaces() {
        QFETCH(QVariant, reducedMotion);
        QFETCH(QVariant, enableAnimations);
        if (reducedMotion.isValid())
            _portal->set(appearance, u"reduced-motion"_s, reducedMotion);
        if (enableAnimations.isValid())
            _portal->set(gnome, u"enable-animations"_s, enableAnimations);
        start();
        settle();
        QTEST(_settings->reducedMotion(), "reduced");
    }

    void textIsScaledByAPositiveNumberOnly_data() {
        QTest::addColumn<QVariant>("told");
        QTest::addColumn<double>("scale");
        QTest::newRow("nothing") << QVariant() << 1.0;
        QTest::newRow("larger") << QVariant(1.25) << 1.25;
        QTest::newRow("smaller") << QVariant(0.75) << 0.75;
        QTest::newRow("huge") << QVariant(3.0) << 3.0;
        QTest::newRow("0") << QVariant(0.0) << 1.0;
        QTest::newRow("negative") << QVariant(-1.5) << 1.0;
        QTest::newRow("infinite") << QVariant(qInf()) << 1.0;
        QTest::newRow("not a number") << QVariant(qQNaN()) << 1.0;
        QTest::newRow("an integer") << QVariant(2u) << 1.0;
        QTest::newRow("text") << QVariant(u"1.5"_s) << 1.0;
    }
    void textIsScaledByAPositiveNumberOnly() {
        QFETCH(QVariant, told);
        if (told.isValid())
            _portal->set(gnome, u"text-scaling-factor"_s, told);
        start();
        settle();
        QTEST(_settings->textScale(), "scale");
    }

    void anotherTextScaleIsToldOnce() {
        start();
        settle();
        QSignalSpy scale(_settings.get(), &DesktopSettings::textScaleChanged);
        _portal->change(gnome, u"text-scaling-factor"_s, 1.0);
        _portal->change(appearance, u"text-scaling-factor"_s, 2.0); // another group
        _portal->change(gnome, u"text-scaling-factor"_s, 1.5);
        QTRY_COMPARE(_settings->textScale(), 1.5);
        QCOMPARE(scale.count(), 1);
    }

    void aValueInOneVariantIsReadToo() {
        _portal->nesting = 1;
        _portal->set(appearance, u"color-scheme"_s, 2u);
        start();
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::light);
    }

    void aChangeIsToldOnceAndOnlyIfItIsOne() {
        _portal->set(appearance, u"color-scheme"_s, 1u);
        start();
        settle();
        QSignalSpy scheme(_settings.get(), &DesktopSettings::colorSchemeChanged);
        QSignalSpy contrast(_settings.get(), &DesktopSettings::increasedContrastChanged);
        QSignalSpy motion(_settings.get(), &DesktopSettings::reducedMotionChanged);
        _portal->change(appearance, u"color-scheme"_s, 1u);
        _portal->change(appearance, u"contrast"_s, 0u);
        _portal->change(gnome, u"enable-animations"_s, true);
        _portal->change(gnome, u"contrast"_s, 1u);                // another group
        _portal->change(appearance, u"accent-color"_s, u"red"_s); // another key
        _portal->change(appearance, u"contrast"_s, 1u);
        QTRY_COMPARE(contrast.count(), 1);
        QVERIFY(_settings->increasedContrast());
        QCOMPARE(scheme.count() + motion.count(), 0);
        _portal->change(gnome, u"enable-animations"_s, false);
        QTRY_COMPARE(motion.count(), 1);
        QVERIFY(_settings->reducedMotion());
        _portal->change(appearance, u"color-scheme"_s, u"dark"_s);
        QTRY_COMPARE(scheme.count(), 1);
        QCOMPARE(_settings->colorScheme(), ColorScheme::noPreference);
    }

    void aChangeIsNotUndoneByAnOlderQuestion() {
        _portal->isSilent = true;
        start();
        QTRY_COMPARE(_portal->open.size(), keys);
        _portal->change(appearance, u"color-scheme"_s, 2u);
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::light);
        _portal->set(appearance, u"color-scheme"_s, 1u);
        _portal->answerOne();
        _portal->change(appearance, u"contrast"_s, 1u); // comes behind the answer
        QTRY_VERIFY(_settings->increasedContrast());
        QCOMPARE(_settings->colorScheme(), ColorScheme::light);
    }

    void onlyThePortalIsBelieved() {
        start();
        settle();
        Portal other(_bus.connection(u"other"_s));
        auto reader = QDBusConnection(u"reader"_s);
        Listener listener;
        reader.connect({}, portalPath, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s, &listener,
                       SLOT(hear(QString)));
        other.change(appearance, u"color-scheme"_s, 1u);
        QTRY_VERIFY(listener.heard.contains(appearance));
        QCoreApplication::processEvents();
        QCOMPARE(_settings->colorScheme(), ColorScheme::noPreference);
    }

    void aPortalThatComesLaterIsAskedThen() {
        _portal->disappear();
        _portal->set(appearance, u"color-scheme"_s, 1u);
        start();
        QCoreApplication::processEvents();
        QCOMPARE(_settings->colorScheme(), ColorScheme::noPreference);
        QVERIFY(_portal->appear());
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::dark);
    }

    void aPortalThatRestartsIsAskedAgainAndMissedByNobody() {
        _portal->set(appearance, u"color-scheme"_s, 1u);
        start();
        settle();
        QSignalSpy scheme(_settings.get(), &DesktopSettings::colorSchemeChanged);
        _portal.reset();
        QDBusConnection::disconnectFromBus(u"portal"_s);
        Portal fresh(_bus.connection(u"other"_s));
        fresh.set(appearance, u"color-scheme"_s, 2u);
        QVERIFY(fresh.appear());
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::light);
        QCOMPARE(scheme.count(), 1); // from dark to light and not by way of nothing
        fresh.change(appearance, u"color-scheme"_s, 1u);
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::dark);
    }

    void aPortalThatIsReplacedIsAskedAgain() {
        start();
        settle();
        Portal fresh(_bus.connection(u"other"_s));
        fresh.set(appearance, u"color-scheme"_s, 2u);
        QVERIFY(fresh.appear());
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::light);
        QCOMPARE(fresh.asked.size(), keys);
    }

    void questionsThatARestartCutsOffAreAskedAgain() {
        _portal->isSilent = true;
        start();
        QTRY_COMPARE(_portal->open.size(), keys);
        Portal fresh(_bus.connection(u"other"_s));
        fresh.set(appearance, u"color-scheme"_s, 1u);
        _portal.reset();
        QDBusConnection::disconnectFromBus(u"portal"_s); // the bus answers for it, with failures
        QVERIFY(fresh.appear());
        QTRY_COMPARE(_settings->colorScheme(), ColorScheme::dark);
        QCOMPARE(fresh.asked.size(), keys);
    }

    void whatAPortalNoLongerSaysIsNoPreference() {
        _portal->set(appearance, u"contrast"_s, 1u);
        start();
        QTRY_VERIFY(_settings->increasedContrast());
        _portal->disappear();
        _portal->values.clear();
        QVERIFY(_portal->appear());
        QTRY_VERIFY(!_settings->increasedContrast());
    }

    void withoutABusNothingIsPreferred() {
        _settings = DesktopSettings::on(QDBusConnection(u"none"_s));
        QCoreApplication::processEvents();
        QCOMPARE(_settings->colorScheme(), ColorScheme::noPreference);
        QVERIFY(!_settings->reducedMotion());
        _settings = DesktopSettings::ofSession(); // of a test there is none
        QCoreApplication::processEvents();
        QVERIFY(!_settings->increasedContrast());
    }

    void aBusThatGoesLeavesWhatWasSaid() {
        _portal->set(appearance, u"color-scheme"_s, 1u);
        start();
        settle();
        QDBusConnection::disconnectFromBus(u"reader"_s);
        QCoreApplication::processEvents();
        QCOMPARE(_settings->colorScheme(), ColorScheme::dark);
    }
};

QTEST_GUILESS_MAIN(TestDesktopSettings)
#include "tst_desktopsettings.moc"
