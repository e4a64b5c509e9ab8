#include "Support/Await.h"
#include "Support/MockHelperClient.h"
#include "Support/SampleData.h"

#include <QTest>

#include <limits>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

class TestMockHelperClient : public QObject {
    Q_OBJECT

    /// Reads `count` events, or fewer if the stream ends.
    static std::vector<HelperEvent> take(const EventReader &events, std::size_t count) {
        auto taking = [](EventReader reader, std::size_t wanted) -> QCoro::Task<std::vector<HelperEvent>> {
            std::vector<HelperEvent> taken;
            while (taken.size() < wanted) {
                auto event = co_await reader.next();
                if (!event)
                    break;
                taken.push_back(std::move(*event));
            }
            co_return taken;
        };
        return outcomeOf(taking(events, count)).value.value_or(std::vector<HelperEvent>());
    }

private Q_SLOTS:
    void withoutResponsesASendSucceedsAndARecordDoesNot() {
        MockHelperClient client;
        QVERIFY(outcomeOf(client.send(Request::getConfig())).succeeded());
        const auto outcome = outcomeOf(client.request<PreviewTracksResult>(Request::getConfig()));
        try {
            std::rethrow_exception(outcome.failure);
        } catch (const HelperError &error) {
            const auto *failure = caseOf<HelperError::DecodeFailure>(error);
            QVERIFY(failure);
            QVERIFY2(failure->text.startsWith(u"mock result mismatch for getConfig: "_s), qPrintable(failure->text));
        }
    }

    void aResponseIsReadAsTheRecordAskedFor() {
        MockHelperClient client({{Method::getPlaylistTracks, SampleData::previewTracksResult()}});
        const auto outcome = outcomeOf(client.getPlaylistTracks(PlaylistSourceId::spotify, u"p"_s, std::nullopt));
        QVERIFY(outcome.succeeded());
        QCOMPARE(outcome.value->size(), SampleData::previewTracks().size());
    }

    void theTypedHelpersWorkAsWithTheRealOne() {
        // A bare list: the first way fails, the second succeeds.
        const auto client = std::make_shared<MockHelperClient>(
            MockHelperClient::Responses{{Method::getPlaylistTracks, toJSONValue(SampleData::previewTracks())}});
        const auto outcome = outcomeOf(client->getPlaylistTracks(PlaylistSourceId::spotify, u"p"_s, u"name"_s));
        QVERIFY(outcome.succeeded());
        const auto sent = outcomeOf(client->sent());
        const auto request = Request::getPlaylistTracks(PlaylistSourceId::spotify, u"p"_s, u"name"_s);
        QCOMPARE(*sent.value, (std::vector{request, request}));
    }

    void aResponseThatIsNoJSONStillSatisfiesASend() {
        const auto bad = JSONValue::number(std::numeric_limits<double>::quiet_NaN());
        MockHelperClient client({{Method::getConfig, bad}});
        QVERIFY(outcomeOf(client.send(Request::getConfig())).succeeded());
        QVERIFY(!outcomeOf(client.request<SafeConfig>(Request::getConfig())).succeeded());
    }

    void sentShowsTheCallsInOrderWithTheirArguments() {
        MockHelperClient client;
        QVERIFY(outcomeOf(client.sent()).value->empty());
        auto first = client.send(Request::listPlaylists(PlaylistSourceId::apple));
        auto second = client.notify(Request::cancelSync(u"run"_s));
        auto third = client.send(Request::trashOrphans({u"/a"_s, u"/b"_s}));
        QVERIFY(outcomeOf(std::move(first)).succeeded());
        QVERIFY(outcomeOf(std::move(second)).succeeded());
        QVERIFY(outcomeOf(std::move(third)).succeeded());
        const std::vector<Request> expected{Request::listPlaylists(PlaylistSourceId::apple),
                                            Request::cancelSync(u"run"_s), Request::trashOrphans({u"/a"_s, u"/b"_s})};
        QCOMPARE(*outcomeOf(client.sent()).value, expected);
    }

    void playDeliversReadinessAndTheScriptInOrder() {
        const auto script = SampleData::syncScript();
        MockHelperClient client({}, script);
        client.play(true);
        client.emit(HelperEvent::helperCrashed()); // after the end: dropped
        auto expected = std::vector{HelperEvent::helperReady()};
        expected.insert(expected.end(), script.begin(), script.end());
        QCOMPARE(take(client.events(), 100), expected);
    }

    void playLeavesTheStreamOpenForMore() {
        MockHelperClient client;
        client.play(false);
        client.emit(HelperEvent::helperCrashed());
        client.finish();
        const std::vector expected{HelperEvent::helperReady(), HelperEvent::helperCrashed()};
        QCOMPARE(take(client.events(), 100), expected);
    }

    void aCancelledCallEndsWithTheCancellation() {
        MockHelperClient client;
        std::stop_source source;
        source.request_stop();
        auto calling = client.send(Request::getConfig(), HelperClienting::standardTimeout, source.get_token());
        QVERIFY(outcomeOf(std::move(calling)).failureText().contains(u"cancelled"_s));
    }

    void theReleaseOfTheClientEndsItsStream() {
        auto client = std::make_unique<MockHelperClient>();
        const auto events = client->events();
        client.reset();
        QVERIFY(take(events, 1).empty());
    }
};

QTEST_GUILESS_MAIN(TestMockHelperClient)
#include "tst_mockhelperclient.moc"
