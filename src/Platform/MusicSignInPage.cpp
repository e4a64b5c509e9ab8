#include "Platform/MusicSignInPage.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <array>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace zelk::MusicSignInPage {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(MusicSignInPage)
};

constexpr qsizetype failureLimit = 300; // characters of a message

// The colours are those of the application's windows.
constexpr auto page = R"html(<!DOCTYPE html>
<html lang="@language@">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<meta name="color-scheme" content="light dark">
<title>@title@</title>
<link rel="icon" href="data:,">
<style nonce="@nonce@">
:root { --window: #F6F7F9; --card: #FFFFFF; --stroke: #D4D6DA; --primary: #1B1D22; --secondary: #565B66;
        --fill: #5552D9; --ring: #4B48CC; }
@media (prefers-color-scheme: dark) {
    :root { --window: #1C1D21; --card: #27282E; --stroke: #43444A; --primary: #F2F3F5; --secondary: #AFB3BD;
            --fill: #6663E4; --ring: #A9A7FF; }
}
body { margin: 0; min-height: 100vh; display: grid; place-items: center; background: var(--window);
       color: var(--secondary); font: 16px/1.4 Inter, system-ui, sans-serif; }
main { box-sizing: border-box; max-width: 30rem; margin: 1rem; padding: 2rem; border: 1px solid var(--stroke);
       border-radius: 12px; background: var(--card); }
h1 { margin: 0 0 .5rem; color: var(--primary); font-size: 1.375rem; }
p { margin: 0; overflow-wrap: anywhere; }
#buttons { display: flex; gap: .5rem; justify-content: flex-end; margin-top: 1.5rem; }
button { padding: .5rem 1rem; border: 1px solid var(--stroke); border-radius: 8px; background: var(--card);
         color: var(--primary); font: inherit; font-weight: 500; }
#signIn { border-color: var(--fill); background: var(--fill); color: #FFFFFF; }
button:focus-visible { outline: 2px solid var(--ring); outline-offset: 1px; }
button:disabled { opacity: .4; }
[hidden] { display: none !important; }
</style>
</head>
<body>
<main>
<h1>@heading@</h1>
<p id="words" role="status">@oneMoment@</p>
<noscript><p>@noScript@</p></noscript>
<div id="buttons"><button id="cancel" type="button">@cancel@</button><button id="signIn" type="button" disabled>@signIn@</button></div>
</main>
<script nonce="@nonce@">
'use strict';
(() => {
    const request = @request@;
    const texts = @texts@;
    const words = document.getElementById('words');
    const buttons = document.getElementById('buttons');
    const signIn = document.getElementById('signIn');
    let isOver = false;

    const answer = async (said, text) => {
        if (isOver)
            return;
        isOver = true;
        buttons.hidden = true;
        try {
            const response = await fetch(location.pathname, {
                method: 'POST',
                headers: { 'Content-Type': 'application/json' },
                body: JSON.stringify(said),
            });
            words.textContent = response.ok ? text : texts.notTaken;
        } catch {
            words.textContent = texts.noLongerAwaited;
        }
    };
    const fail = error => {
        const text = String(error && (error.description || error.message || error.errorCode || error.name) || error || texts.unknownError);
        answer({ failure: text.slice(0, 300) }, texts.failed.replace('%1', () => text));
    };

    let isReady = false;
    const getReady = async () => {
        if (isReady || isOver)
            return;
        isReady = true;
        try {
            await MusicKit.configure({
                developerToken: request.developerToken,
                app: { name: 'zelk', build: request.build },
            });
            const music = MusicKit.getInstance();
            if (request.ignoresCache && music.isAuthorized)
                await music.unauthorize();
        } catch (error) {
            fail(error);
            return;
        }
        if (isOver)
            return;
        words.textContent = texts.press;
        signIn.disabled = false;
        signIn.focus();
    };

    // In the user's own gesture, or the browser would not let the window of the sign-in open.
    signIn.addEventListener('click', async () => {
        signIn.disabled = true;
        words.textContent = texts.goOn;
        try {
            const userToken = await MusicKit.getInstance().authorize();
            if (!userToken)
                throw new Error(texts.noAccess);
            answer({ userToken }, texts.signedIn);
        } catch (error) {
            fail(error);
        }
    });
    document.getElementById('cancel').addEventListener('click',
        () => answer({ cancelled: true }, texts.cancelled));

    document.addEventListener('musickitloaded', getReady);
    const script = document.createElement('script');
    script.addEventListener('load', () => { if (window.MusicKit) getReady(); });
    script.addEventListener('error', () => fail(texts.notLoaded));
    script.src = request.musicKit;
    document.head.append(script);
})();
</script>
</body>
</html>
)html";

QByteArray randomNonce() {
    std::array<quint32, 4> random{};
    QRandomGenerator::system()->fillRange(random.data(), qsizetype(random.size()));
    return QByteArray(reinterpret_cast<const char *>(random.data()), sizeof random).toBase64();
}

/// JSON that can't end the script it stands in.
QByteArray scriptLiteral(const QJsonObject &object) {
    return QJsonDocument(object)
        .toJson(QJsonDocument::Compact)
        .replace('<', "\\u003c")
        .replace("\u2028", "\\u2028")
        .replace("\u2029", "\\u2029");
}

/// What stands on the page from the start, by its place.
std::vector<std::pair<QByteArray, QString>> standingTexts() {
    return {
        {"@language@", Texts::tr("en", "the language of this page, as HTML names it")},
        {"@title@", Texts::tr("zelk: Sign in to Apple Music")},
        {"@heading@", Texts::tr("Sign in to Apple Music")},
        {"@oneMoment@", Texts::tr("One moment…")},
        {"@noScript@", Texts::tr("This page needs JavaScript. Turn it on and reload the page, or close this window.")},
        {"@cancel@", Texts::tr("Cancel")},
        {"@signIn@", Texts::tr("Sign In")},
    };
}

/// What its script says later, by the script's names.
QJsonObject scriptTexts() {
    return {
        {u"press"_s, Texts::tr("Press “Sign In” and allow zelk to read your Apple Music library and playlists.")},
        {u"goOn"_s, Texts::tr("Go on in the window that has opened.")},
        {u"signedIn"_s, Texts::tr("You are signed in. You can close this window.")},
        {u"cancelled"_s, Texts::tr("The sign-in was cancelled. You can close this window.")},
        {u"failed"_s, Texts::tr("Signing in failed: %1. You can close this window.")},
        {u"noAccess"_s, Texts::tr("Apple Music gave no access")},
        {u"notLoaded"_s, Texts::tr("the sign-in of Apple Music could not be loaded")},
        {u"unknownError"_s, Texts::tr("unknown error")},
        {u"notTaken"_s,
         Texts::tr("zelk did not take the answer of this page. Close this window and connect again in zelk.")},
        {u"noLongerAwaited"_s,
         Texts::tr("zelk no longer waits for this page. Close this window and connect again in zelk.")},
    };
}

} // namespace

LoopbackPage::Content content(const Request &request) {
    const QByteArray nonce = randomNonce();
    const QJsonObject told{{u"developerToken"_s, request.developerToken},
                           {u"musicKit"_s, request.musicKit.toString(QUrl::FullyEncoded)},
                           {u"ignoresCache"_s, request.ignoresCache},
                           {u"build"_s, request.build}};
    const QByteArray scriptOrigin =
        request.musicKit.toString(QUrl::FullyEncoded | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment)
            .toLatin1();
    // Of other hosts, MusicKit speaks to several of Apple's; its own script comes from one.
    QByteArray html(page);
    for (const auto &[place, text] : standingTexts())
        html.replace(place, text.toHtmlEscaped().toUtf8());
    html.replace("@nonce@", nonce)
        .replace("@texts@", scriptLiteral(scriptTexts()))
        .replace("@request@", scriptLiteral(told));
    return {
        .html = std::move(html),
        .contentSecurityPolicy = "default-src 'none'; script-src 'nonce-" + nonce + "' " + scriptOrigin +
                                 "; style-src 'nonce-" + nonce +
                                 "'; connect-src 'self' https://*.apple.com; frame-src https://*.apple.com"
                                 "; img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'",
    };
}

std::optional<Answer> readAnswer(const QByteArray &body) {
    const QJsonObject said = QJsonDocument::fromJson(body).object();
    if (said.size() != 1)
        return {};
    const QString userToken = said.value(u"userToken"_s).toString();
    const QString failure = said.value(u"failure"_s).toString().simplified().left(failureLimit);
    const bool isCancelled = said.value(u"cancelled"_s) == true;
    if (userToken.isEmpty() && failure.isEmpty() && !isCancelled)
        return {};
    return Answer{.userToken = userToken, .failure = failure, .isCancelled = isCancelled};
}

} // namespace zelk::MusicSignInPage
