#include "Services/HttpsReader.h"

#include "Services/UpdateError.h"
#include "Support/Cancelled.h"
#include "Support/OneShot.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <utility>

namespace zelk {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int redirections = 5;
/// What the network may hold for us before we take it.
constexpr qint64 bufferSize = 256 * 1024;

bool isSecure(const QUrl &url) {
    return url.isValid() && url.scheme() == u"https"_s && !url.host().isEmpty();
}

QNetworkRequest requestFor(const QUrl &url) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(redirections);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    // As it lies there: a file is measured and checked byte for byte, and nothing is inflated beyond its limit.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      u"%1/%2"_s.arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion()));
    return request;
}

UpdateProblem problemOf(const QNetworkReply &reply) {
    switch (reply.error()) {
    case QNetworkReply::InsecureRedirectError:
    case QNetworkReply::ProtocolUnknownError:
        return UpdateProblem::insecureAddress;
    case QNetworkReply::SslHandshakeFailedError:
        return UpdateProblem::untrustedServer;
    case QNetworkReply::TooManyRedirectsError:
        return UpdateProblem::refused;
    default:
        break;
    }
    const bool answered = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() >= 400;
    return answered ? UpdateProblem::refused : UpdateProblem::unreachable;
}

/// One reading: its reply, and what ends it.
class Exchange : public std::enable_shared_from_this<Exchange> {
public:
    Exchange(std::shared_ptr<QNetworkAccessManager> network, std::shared_ptr<Clock> clock, HttpsReader::Sink sink,
             HttpsReader::Patience patience)
        : _network(std::move(network)), _clock(std::move(clock)), _sink(std::move(sink)), _patience(patience) {}

    ~Exchange() { close(); }
    Q_DISABLE_COPY_MOVE(Exchange)

    QFuture<void> future() const { return _end.future(); }

    void begin(const QUrl &url) {
        _reply = _network->get(requestFor(url));
        _reply->setReadBufferSize(bufferSize);
        QObject::connect(_reply, &QNetworkReply::readyRead, &_context, [this] { take(); });
        QObject::connect(_reply, &QNetworkReply::finished, &_context, [this] { finish(); });
        _whole = _clock->after(_patience.whole, [this] { fail(UpdateProblem::silence); });
        listen();
    }

    void cancel() { end(std::make_exception_ptr(Cancelled())); }

private:
    void listen() {
        _silence = _clock->after(_patience.silence, [this] { fail(UpdateProblem::silence); });
    }

    void take() {
        // The body of a failure is no part of what was asked for, and neither is that of a redirection.
        const int status = _reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (status < 200 || status >= 300)
            return;
        try {
            const QByteArray chunk = _reply->readAll();
            if (chunk.isEmpty())
                return;
            _sink(chunk);
            listen();
        } catch (...) {
            end(std::current_exception());
        }
    }

    void finish() {
        const auto held = shared_from_this();
        if (_reply->error() != QNetworkReply::NoError) {
            fail(problemOf(*_reply), _reply->errorString());
            return;
        }
        take();
        end({});
    }

    void fail(UpdateProblem problem, const QString &detail = {}) {
        end(std::make_exception_ptr(UpdateError(problem, detail)));
    }

    void end(const std::exception_ptr &failure) {
        const auto held = shared_from_this();
        close();
        if (failure)
            _end.fail(failure);
        else
            _end.fulfil();
    }

    /// Nothing happens after it.
    void close() {
        if (!_reply)
            return;
        QNetworkReply *reply = std::exchange(_reply, nullptr);
        reply->disconnect(&_context);
        reply->abort();
        reply->deleteLater();
        _silence.reset();
        _whole.reset();
    }

    const std::shared_ptr<QNetworkAccessManager> _network;
    const std::shared_ptr<Clock> _clock;
    const HttpsReader::Sink _sink;
    const HttpsReader::Patience _patience;
    OneShot<void> _end{std::make_exception_ptr(Cancelled())};
    QObject _context;
    QNetworkReply *_reply = nullptr; // its manager's, until it is deleted
    std::unique_ptr<Clock::Alarm> _silence;
    std::unique_ptr<Clock::Alarm> _whole;
};

} // namespace

QCoro::Task<> HttpsReader::read(QUrl url, Sink sink, Patience patience, std::stop_token stop) const {
    if (!isSecure(url))
        throw UpdateError(UpdateProblem::insecureAddress, url.toDisplayString());
    const auto exchange = std::make_shared<Exchange>(_network, _clock, std::move(sink), patience);
    const auto future = exchange->future();
    exchange->begin(url);
    const std::stop_callback onStop(stop, [exchange] { exchange->cancel(); });
    co_await future;
    if (stop.stop_requested())
        throw Cancelled();
}

QCoro::Task<QByteArray> HttpsReader::readAll(QUrl url, qsizetype limit, std::stop_token stop) const {
    const auto all = std::make_shared<QByteArray>();
    const Sink sink = [all, limit](const QByteArray &chunk) {
        if (chunk.size() > limit - all->size())
            throw UpdateError(UpdateProblem::tooLarge);
        all->append(chunk);
    };
    auto reading = read(std::move(url), sink, Patience{.silence = 30s, .whole = 60s}, std::move(stop));
    co_await reading;
    co_return *all;
}

} // namespace zelk
