#include "Transport/HelperError.h"
#include "Transport/JSONError.h"
#include "Transport/JSONFields.h"

#include <QFuture>
#include <QPromise>
#include <QTest>
#include <QTranslator>

#include <stdexcept>
#include <thread>

using namespace zelk;
using namespace Qt::Literals::StringLiterals;

namespace {

// A language of its own, in which each text stands in brackets.
class Bracketing final : public QTranslator {
public:
    QString translate(const char *, const char *text, const char *, int) const override {
        return u'[' + QString::fromUtf8(text) + u']';
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class TestHelperError : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachFailureSaysItsText_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<QString>("text");
        QTest::newRow("decodeFailure") << 0 << u"Could not understand a message from the helper: no brace"_s;
        QTest::newRow("engineError") << 1 << u"A sync is running."_s;
        QTest::newRow("helperMissing") << 2 << u"The zelk helper could not be found in the app bundle."_s;
        QTest::newRow("helperCrashed") << 3 << u"The zelk helper stopped unexpectedly."_s;
        QTest::newRow("helperUnavailable") << 4 << u"The zelk helper is not available."_s;
        QTest::newRow("requestTimedOut") << 5 << u"The request to the helper timed out."_s;
        QTest::newRow("cancelled") << 6 << u"The request was cancelled."_s;
    }
    void eachFailureSaysItsText() {
        QFETCH(int, which);
        QFETCH(QString, text);
        const HelperError error = failures().at(which);
        QCOMPARE(error.errorDescription(), text);
        QCOMPARE(QString::fromUtf8(error.what()), text);
        QCOMPARE(describe(error), text);
    }

    void theWindowsLanguageIsShownAndTheLogIsEnglish() {
        Bracketing language;
        QCoreApplication::installTranslator(&language);
        const HelperError crash = HelperError::helperCrashed();
        QCOMPARE(crash.errorDescription(), u"[The zelk helper stopped unexpectedly.]"_s);
        QCOMPARE(describe(std::make_exception_ptr(crash)), crash.errorDescription());
        QCOMPARE(logText(std::make_exception_ptr(crash)), u"The zelk helper stopped unexpectedly."_s);
        QCOMPARE(crash.what(), "The zelk helper stopped unexpectedly.");
        // The engine's own words are nobody's to translate.
        const auto refusal = HelperError::engineError(u"internal"_s, u"Oh."_s);
        QCOMPARE(refusal.errorDescription(), u"Oh."_s);
        QCOMPARE(HelperError::decodeFailure(u"no brace"_s).errorDescription(),
                 u"[Could not understand a message from the helper: ]no brace"_s);
        QCOMPARE(describe(std::make_exception_ptr(7)), u"[Unknown error]"_s);
        QCOMPARE(logText(std::make_exception_ptr(7)), u"Unknown error"_s);
    }

    void failuresAreEqualOnlyToThemselves() {
        const QList<HelperError> all = failures();
        for (qsizetype i = 0; i < all.size(); ++i) {
            for (qsizetype j = 0; j < all.size(); ++j)
                QCOMPARE(all.at(i) == failures().at(j), i == j);
        }
        QVERIFY(!(HelperError::decodeFailure(u"a"_s) == HelperError::decodeFailure(u"b"_s)));
        QVERIFY(!(HelperError::engineError(u"a"_s, u"m"_s) == HelperError::engineError(u"b"_s, u"m"_s)));
        QVERIFY(!(HelperError::engineError(u"a"_s, u"m"_s) == HelperError::engineError(u"a"_s, u"n"_s)));
    }

    void aKnownCodeIsSeenAsTheEnumeration_data() {
        QTest::addColumn<QString>("code");
        QTest::addColumn<EngineErrorCode>("expected");
        QTest::newRow("bad_request") << u"bad_request"_s << EngineErrorCode::badRequest;
        QTest::newRow("unknown_method") << u"unknown_method"_s << EngineErrorCode::unknownMethod;
        QTest::newRow("invalid_params") << u"invalid_params"_s << EngineErrorCode::invalidParams;
        QTest::newRow("not_configured") << u"not_configured"_s << EngineErrorCode::notConfigured;
        QTest::newRow("sync_in_progress") << u"sync_in_progress"_s << EngineErrorCode::syncInProgress;
        QTest::newRow("spotify_auth_expired") << u"spotify_auth_expired"_s << EngineErrorCode::spotifyAuthExpired;
        QTest::newRow("apple_automation_denied")
            << u"apple_automation_denied"_s << EngineErrorCode::appleAutomationDenied;
        QTest::newRow("not_implemented") << u"not_implemented"_s << EngineErrorCode::notImplemented;
        QTest::newRow("internal") << u"internal"_s << EngineErrorCode::internal;
    }
    void aKnownCodeIsSeenAsTheEnumeration() {
        QFETCH(QString, code);
        QFETCH(EngineErrorCode, expected);
        QCOMPARE(HelperError::engineError(code, u"m"_s).engineCode(), std::optional(expected));
        QCOMPARE(QString(wireName(expected)), code);
        QCOMPARE(allCases<EngineErrorCode>().size(), std::size_t(9));
    }

    void anUnknownCodeAndAnyOtherFailureHaveNoCode() {
        QCOMPARE(HelperError::engineError(u"out_of_tea"_s, u"m"_s).engineCode(), std::nullopt);
        QCOMPARE(HelperError::engineError(u""_s, u"m"_s).engineCode(), std::nullopt);
        QCOMPARE(HelperError::engineError(u"Internal"_s, u"m"_s).engineCode(), std::nullopt);
        for (const HelperError &error : failures()) {
            if (!caseOf<HelperError::EngineError>(error))
                QCOMPARE(error.engineCode(), std::nullopt);
        }
        QCOMPARE(HelperError::decodeFailure(u"internal"_s).engineCode(), std::nullopt);
    }

    void aFailureCrossesThreadsInAFuture() {
        QPromise<int> promise;
        promise.start();
        QFuture<int> future = promise.future();
        std::thread([&] {
            promise.setException(std::make_exception_ptr(HelperError::engineError(u"internal"_s, u"Oh."_s)));
            promise.finish();
        }).join();
        try {
            future.waitForFinished();
            QFAIL("no failure came out of the future");
        } catch (const HelperError &error) {
            QCOMPARE(error, HelperError::engineError(u"internal"_s, u"Oh."_s));
        }
    }

    void anyErrorHasATextToShow() {
        QCOMPARE(describe(JSONError(u"data.id"_s, u"missing"_s)), u"data.id: missing"_s);
        QCOMPARE(describe(JSONError({}, u"no object"_s)), u"no object"_s);
        QCOMPARE(describe(std::runtime_error("caf\xc3\xa9")), u"café"_s);
        QCOMPARE(describe(std::make_exception_ptr(HelperError::helperMissing())),
                 HelperError::helperMissing().errorDescription());
        QCOMPARE(describe(std::make_exception_ptr(7)), u"Unknown error"_s);
    }

private:
    static QList<HelperError> failures() {
        return {HelperError::decodeFailure(u"no brace"_s),
                HelperError::engineError(u"sync_in_progress"_s, u"A sync is running."_s),
                HelperError::helperMissing(),
                HelperError::helperCrashed(),
                HelperError::helperUnavailable(),
                HelperError::requestTimedOut(),
                HelperError::cancelled()};
    }
};

QTEST_GUILESS_MAIN(TestHelperError)
#include "tst_helpererror.moc"
