// The built application handed addresses at its launch, as a desktop does that takes it for whom they are meant for.
#include "ApplicationBench.h"

#include <QTest>

using namespace zelk;

namespace {

/// Lines of the log that tell what became of addresses.
QStringList dropped(const QByteArray &errors) {
    QStringList found;
    const auto lines = QString::fromUtf8(errors).split(u'\n');
    for (const auto &line : lines) {
        if (const auto at = line.indexOf("Dropped an address"_s); at >= 0)
            found.append(line.mid(at));
    }
    return found;
}

QString withScheme(const QString &scheme) {
    return "Dropped an address with the scheme \"%1\"."_s.arg(scheme);
}

QStringList shortRun() {
    return upToTheList +
           QStringList{
               reply(playlists("Late Night"_s)),
               "expect startSync"_s,
               R"(send {"id":"%id%","ok":true})"_s,
               R"(send {"event":"syncStarted","correlationId":"r","data":{"runId":"r","totalPlaylists":1}})"_s,
               R"(send {"event":"syncDone","correlationId":"r","data":{"runId":"r","summary":{"present":0,"ok":0,"flagged":0,"failed":0,"skipped":0,"upgraded":0,"removed":0}}})"_s,
               "drain"_s};
}

} // namespace

class TestApplicationAddresses : public QObject {
    Q_OBJECT

    static void addressRows() {
        QTest::addColumn<QStringList>("addresses");
        QTest::addColumn<QStringList>("schemes");
        QTest::newRow("none") << QStringList{} << QStringList{};
        QTest::newRow("one of a sign-in")
            << QStringList{"zelk://callback?code=SECRET&state=SECRET#SECRET"_s} << QStringList{"zelk"_s};
        QTest::newRow("several") << QStringList{"zelk://SECRET"_s, "https://SECRET@example.org/"_s, "mailto:SECRET"_s}
                                 << QStringList{"zelk"_s, "https"_s, "mailto"_s};
        QTest::newRow("a file") << QStringList{"/tmp/SECRET.m3u"_s} << QStringList{QString()};
        QTest::newRow("nonsense") << QStringList{"::::"_s, QString(), "zelk:"_s, "%%%"_s}
                                  << QStringList{QString(), QString(), "zelk"_s, QString()};
    }

private Q_SLOTS:
    void initTestCase() { setOnboarded(); }

    void anAddressAsksNothingOfTheEngine_data() { addressRows(); }
    void anAddressAsksNothingOfTheEngine() {
        QFETCH(QStringList, addresses);
        QFETCH(QStringList, schemes);
        Application application(upToTheList + QStringList{reply(playlists("Late Night"_s)), "drain"_s}, addresses);
        QTRY_COMPARE_WITH_TIMEOUT(application.engine.lines().size(), 2, 20000);
        QByteArray errors;
        const auto told = [&] {
            errors += application.process.readAllStandardError();
            return dropped(errors).size();
        };
        QTRY_COMPARE_WITH_TIMEOUT(told(), schemes.size(), 20000);
        for (int i = 0; i < schemes.size(); ++i)
            QCOMPARE(dropped(errors).at(i), withScheme(schemes.at(i)));
        QTest::qWait(200); // for what must not come
        QCOMPARE(application.engine.lines(), firstLines);
        QCOMPARE(application.engine.launches(), 1);
        QCOMPARE(application.process.state(), QProcess::Running);
        errors += application.process.readAllStandardError();
        QVERIFY2(!errors.contains("SECRET"), errors.constData());
        QVERIFY(application.process.readAllStandardOutput().isEmpty());
    }

    void anAddressChangesNothingOfARun_data() { addressRows(); }
    void anAddressChangesNothingOfARun() {
        QFETCH(QStringList, addresses);
        const auto outcomeWith = [](const QStringList &arguments) {
            Application application(shortRun(), QStringList{"--unattended"_s} + arguments);
            const bool ended = application.finished();
            return std::tuple(ended, application.process.exitCode(), application.engine.lines(),
                              application.process.readAllStandardOutput());
        };
        const auto plain = outcomeWith({});
        QCOMPARE(std::get<1>(plain), 0);
        QVERIFY(std::get<0>(plain) && std::get<2>(plain).size() == 3);
        QVERIFY(outcomeWith(addresses) == plain);
    }
};

QTEST_GUILESS_MAIN(TestApplicationAddresses)
#include "tst_application_addresses.moc"
