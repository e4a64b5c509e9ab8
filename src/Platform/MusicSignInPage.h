#pragma once

#include "Platform/LoopbackPage.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace zelk::MusicSignInPage {

/// What the page is made for.
struct Request {
    QString developerToken;
    QUrl musicKit;             ///< the script that signs in
    bool ignoresCache = false; ///< whether a session of before is ended first
    QString build;             ///< the version of this application
};

/// The page on which the user signs in to Apple Music. It answers once, with one of these:
/// {"userToken": "…"}, {"failure": "…"}, {"cancelled": true}
LoopbackPage::Content content(const Request &request);

struct Answer {
    QString userToken; ///< empty without one
    QString failure;   ///< the page's words, one line
    bool isCancelled = false;
    bool operator==(const Answer &) const = default;
};

/// None when the page never says such a thing.
std::optional<Answer> readAnswer(const QByteArray &body);

} // namespace zelk::MusicSignInPage
