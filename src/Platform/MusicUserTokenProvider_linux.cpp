#include "Platform/MusicUserTokenProvider.h"

#include "Platform/MusicSignInPage.h"
#include "Platform/UrlOpener.h"
#include "Support/Cancelled.h"
#include "Support/Clock.h"
#include "Support/OneShot.h"

#include <QCoreApplication>
#include <QCoroFuture>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(MusicUserTokenProvider)
};

using MusicSignInPage::Answer;

std::exception_ptr tokenError(const QString &description) {
    return std::make_exception_ptr(MusicTokenError(description));
}

QString userTokenOf(const Answer &answer) {
    if (answer.isCancelled)
        throw MusicTokenError(Texts::tr("The sign-in was cancelled."));
    if (answer.userToken.isEmpty())
        throw MusicTokenError(answer.failure);
    return answer.userToken;
}

class BrowserTokenProvider final : public MusicUserTokenProvider {
public:
    explicit BrowserTokenProvider(Browser browser) : _browser(std::move(browser)) {}

    QCoro::Task<QString> userToken(QString developerToken, MusicTokenRequestOptions options,
                                   std::stop_token stop) override {
        if (stop.stop_requested())
            throw Cancelled();
        const auto answer = std::make_shared<OneShot<Answer>>(std::make_exception_ptr(Cancelled()));
        const auto answered = answer->future();
        const auto page = makePage(developerToken, options, answer);
        const auto alarm = _browser.clock->after(_browser.patience, [answer] {
            answer->fail(tokenError(Texts::tr("Nobody signed in before the time was up.")));
        });
        const std::stop_callback onStop(stop, [answer] { answer->fail(std::make_exception_ptr(Cancelled())); });
        open(*page);
        const auto given = co_await answered;
        co_return userTokenOf(given);
    }

private:
    std::unique_ptr<LoopbackPage> makePage(const QString &developerToken, MusicTokenRequestOptions options,
                                           const OneShotRef<Answer> &answer) const {
        const bool ignoresCache = options.testFlag(MusicTokenRequestOption::ignoreCache);
        const MusicSignInPage::Request request{.developerToken = developerToken,
                                               .musicKit = _browser.musicKit,
                                               .ignoresCache = ignoresCache,
                                               .build = QCoreApplication::applicationVersion()};
        return std::make_unique<LoopbackPage>(MusicSignInPage::content(request), [answer](const QByteArray &body) {
            const auto said = MusicSignInPage::readAnswer(body);
            return said && answer->fulfil(*said);
        });
    }

    void open(const LoopbackPage &page) const {
        if (!page.isListening())
            throw MusicTokenError(Texts::tr("The sign-in page could not be made ready: %1.").arg(page.errorText()));
        if (!_browser.opener->open(page.url()))
            throw MusicTokenError(Texts::tr("No web browser could be opened."));
    }

    const Browser _browser;
};

} // namespace

std::unique_ptr<MusicUserTokenProvider> MusicUserTokenProvider::make(Browser browser) {
    return std::make_unique<BrowserTokenProvider>(std::move(browser));
}

} // namespace zelk
