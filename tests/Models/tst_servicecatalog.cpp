#include "Models/ServiceCatalog.h"

#include <QTest>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class ServiceCatalogTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSourcesStandInTheOrderInWhichTheyAreTried() {
        using Info = ServiceCatalog::DownloadSourceInfo;
        const auto &table = ServiceCatalog::downloadSources();
        QCOMPARE(table.size(), 4U);
        QVERIFY((table[0] == Info{SourceId::soulseek,
                                  u"Soulseek"_s,
                                  u"ServiceSoulseek"_s,
                                  u"Peer-to-peer lossless sharing — best quality (FLAC). No setup needed."_s,
                                  {},
                                  {}}));
        QVERIFY((table[1] == Info{SourceId::bandcamp,
                                  u"Bandcamp"_s,
                                  u"ServiceBandcamp"_s,
                                  u"Real FLAC for lossless tracks, straight from artists."_s,
                                  {},
                                  {}}));
        QVERIFY((table[2] == Info{SourceId::soundcloud, u"SoundCloud"_s, u"ServiceSoundCloud"_s,
                                  u"Remixes and DJ edits. Add a token to unlock higher-quality (256 kbps) streams."_s,
                                  AccountService::soundcloud, u"SoundCloud OAuth token (optional)"_s}));
        QVERIFY((table[3] == Info{SourceId::youtube,
                                  u"YouTube"_s,
                                  u"ServiceYouTube"_s,
                                  u"The widest catalog, as a lossy last resort."_s,
                                  {},
                                  {}}));
    }

    void aSourceIsFoundByItsId() {
        for (const auto &each : ServiceCatalog::downloadSources())
            QVERIFY(ServiceCatalog::downloadSource(each.id) == each);
        // Whatever is none of them reads as the first.
        QCOMPARE(ServiceCatalog::downloadSource(static_cast<SourceId>(77)).id, SourceId::soulseek);
    }

    void theProfilesStandInTheirOrder() {
        using Info = ServiceCatalog::QualityProfileInfo;
        const auto &table = ServiceCatalog::qualityProfiles();
        QCOMPARE(table.size(), 3U);
        QVERIFY(
            (table[0] == Info{QualityProfile::best, u"Best"_s, u"Upgrade to lossless whenever it's available."_s}));
        QVERIFY((table[1] == Info{QualityProfile::balanced, u"Balanced"_s,
                                  u"Keep 256k+/lossless; replace anything worse or missing."_s}));
        QVERIFY((table[2] == Info{QualityProfile::fast, u"Fast"_s,
                                  u"Accept the first decent match — fills your library quickly."_s}));
        for (const auto &each : table)
            QVERIFY(ServiceCatalog::qualityProfile(each.id) == each);
    }
};

QTEST_GUILESS_MAIN(ServiceCatalogTest)
#include "tst_servicecatalog.moc"
