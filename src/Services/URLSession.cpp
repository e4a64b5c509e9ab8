#include "Services/URLSession.h"

#include "Services/URLError.h"
#include "Support/Cancelled.h"
#include "Support/Clock.h"
#include "Support/OneShot.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>

#include <utility>

namespace zelk {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(URLSession)
};

using Loading = OneShot<URLSession::Response>;

/// A status that Qt counts as a failure is an answer all the same; a success that Qt finds fault with is none, and
/// neither is a connection that broke off in the middle.
bool isAnswer(int status, bool isSuccess, QNetworkReply::NetworkError error) {
    if (error == QNetworkReply::NoError)
        return status != 0;
    return status != 0 && !isSuccess && error >= QNetworkReply::ContentAccessDenied;
}

void settle(Loading &loading, QNetworkReply &reply) {
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool isSuccess = status >= 200 && status < 300;
    if (isSuccess && reply.bytesAvailable() > URLSession::mostBody)
        loading.fail(std::make_exception_ptr(URLError(URLError::Code::other, Texts::tr("The answer is too large."))));
    else if (isAnswer(status, isSuccess, reply.error()))
        loading.fulfil(URLSession::Response{.status = status, .body = reply.read(URLSession::mostBody)});
    else
        loading.fail(std::make_exception_ptr(URLError(URLError::codeOf(reply.error()), reply.errorString())));
}

void settleIfLarge(Loading &loading, QNetworkReply &reply) {
    if (reply.bytesAvailable() > URLSession::mostBody)
        settle(loading, reply);
}

} // namespace

URLSession::URLSession(QNetworkAccessManager &network, std::shared_ptr<Clock> clock)
    : _network(network), _clock(std::move(clock)) {}

QCoro::Task<URLSession::Response> URLSession::get(QUrl url, std::stop_token stop) {
    const auto loading = std::make_shared<Loading>(std::make_exception_ptr(Cancelled()));
    const auto loaded = loading->future();
    QNetworkRequest request(url);
    // Qt doesn't notice when a packed body ends too early.
    request.setRawHeader("Accept-Encoding", "identity");
    const QPointer<QNetworkReply> reply = _network.get(request);
    QObject::connect(reply, &QNetworkReply::finished, reply, [loading, raw = reply.data()] { settle(*loading, *raw); });
    QObject::connect(reply, &QNetworkReply::readyRead, reply,
                     [loading, raw = reply.data()] { settleIfLarge(*loading, *raw); });
    // The manager takes its replies with it.
    QObject::connect(reply, &QObject::destroyed, [loading] { loading->fail(std::make_exception_ptr(Cancelled())); });
    const auto alarm = _clock->after(patience, [loading] {
        const URLError late(URLError::Code::timedOut, QStringLiteral("The request timed out."));
        loading->fail(std::make_exception_ptr(late));
    });
    const std::stop_callback onStop(stop, [loading] { loading->fail(std::make_exception_ptr(Cancelled())); });

    std::exception_ptr failure;
    Response response;
    try {
        response = co_await loaded;
    } catch (...) {
        failure = std::current_exception();
    }
    if (reply) {
        reply->abort();
        reply->deleteLater();
    }
    if (failure)
        std::rethrow_exception(failure);
    co_return response;
}

} // namespace zelk
