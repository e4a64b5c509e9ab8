#include "Services/URLSession.h"

#include "Services/URLError.h"
#include "Support/Cancelled.h"
#include "Support/Clock.h"
#include "Support/OneShot.h"

#include <QCoroFuture>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

using Loading = OneShot<URLSession::Response>;

/// A status that Qt counts as a failure is an answer all the same; a connection that broke off in the middle is none.
bool isAnswer(const QNetworkReply &reply) {
    const auto error = reply.error();
    const bool hasStatus = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    return hasStatus && (error == QNetworkReply::NoError || error >= QNetworkReply::ContentAccessDenied);
}

void settle(Loading &loading, QNetworkReply &reply) {
    if (isAnswer(reply)) {
        const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        loading.fulfil(URLSession::Response{.status = status, .body = reply.readAll()});
    } else {
        loading.fail(std::make_exception_ptr(URLError(URLError::codeOf(reply.error()), reply.errorString())));
    }
}

} // namespace

URLSession::URLSession(QNetworkAccessManager &network, std::shared_ptr<Clock> clock)
    : _network(network), _clock(std::move(clock)) {}

QCoro::Task<URLSession::Response> URLSession::get(QUrl url, std::stop_token stop) {
    const auto loading = std::make_shared<Loading>(std::make_exception_ptr(Cancelled()));
    const auto loaded = loading->future();
    const QPointer<QNetworkReply> reply = _network.get(QNetworkRequest(url));
    QObject::connect(reply, &QNetworkReply::finished, reply, [loading, raw = reply.data()] { settle(*loading, *raw); });
    // The manager takes its replies with it.
    QObject::connect(reply, &QObject::destroyed, [loading] { loading->fail(std::make_exception_ptr(Cancelled())); });
    const auto alarm = _clock->after(patience, [loading] {
        const URLError late(URLError::Code::timedOut, u"The request timed out."_s);
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
