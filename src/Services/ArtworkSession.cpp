#include "Services/ArtworkSession.h"

#include "Support/Cancelled.h"
#include "Support/OneShot.h"
#include "Support/SerialExecutor.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

constexpr std::chrono::seconds timeoutIntervalForRequest{20};
/// No cover is as large; what is might never end.
constexpr qint64 largestAnswer = qint64{64} << 20;

/// Whether the server has answered, be it with a refusal, which may have a picture for its body.
bool hasAnswered(const QNetworkReply &reply) {
    const auto error = reply.error();
    const bool isRefusal = error > QNetworkReply::UnknownProxyError && error != QNetworkReply::ProtocolUnknownError &&
                           error != QNetworkReply::ProtocolFailure;
    const bool hasStatus = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    return error == QNetworkReply::NoError || (isRefusal && hasStatus);
}

} // namespace

/// One request on its way, on the session's thread.
class ArtworkSession::Fetch : public std::enable_shared_from_this<Fetch> {
public:
    explicit Fetch(std::shared_ptr<Clock> clock) : _clock(std::move(clock)) {}
    ~Fetch() {
        if (_reply) {
            _reply->abort();
            _reply->deleteLater();
        }
    }
    Q_DISABLE_COPY_MOVE(Fetch)

    void start(QNetworkAccessManager &network, const QUrl &url) {
        if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isFile()) {
            fail(u"not a file"_s); // but perhaps a pipe, which would hold up the thread
            return;
        }
        QNetworkRequest request(url);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        _reply = network.get(request);
        const auto self = weak_from_this();
        QObject::connect(_reply, &QNetworkReply::readyRead, _reply, [self] {
            if (const auto fetch = self.lock())
                fetch->hasCome();
        });
        QObject::connect(_reply, &QNetworkReply::finished, _reply, [self] {
            if (const auto fetch = self.lock())
                fetch->finish();
        });
        wait();
    }

    QFuture<QByteArray> future() const { return _done.future(); }
    void cancel() { _done.fail(std::make_exception_ptr(Cancelled())); }

private:
    void wait() {
        _patience = _clock->after(timeoutIntervalForRequest, [self = weak_from_this()] {
            if (const auto fetch = self.lock())
                fetch->fail(u"The request timed out."_s);
        });
    }

    void hasCome() {
        if (_reply->bytesAvailable() > largestAnswer)
            fail(u"The answer is too large."_s);
        else
            wait();
    }

    void finish() {
        if (hasAnswered(*_reply) && _reply->bytesAvailable() <= largestAnswer)
            _done.fulfil(_reply->readAll());
        else
            fail(_reply->errorString());
    }

    void fail(const QString &description) { _done.fail(std::make_exception_ptr(Failure(description))); }

    const std::shared_ptr<Clock> _clock;
    OneShot<QByteArray> _done{std::make_exception_ptr(Cancelled())};
    QPointer<QNetworkReply> _reply;
    std::unique_ptr<Clock::Alarm> _patience;
};

/// Keeps a fetch going for as long as somebody waits for it; the session's end ends it before.
struct ArtworkSession::Entry {
    Entry(const std::shared_ptr<Fetches> &open, const std::shared_ptr<Fetch> &fetch)
        : _open(open), _fetch(fetch.get()) {
        open->emplace(_fetch, fetch);
    }
    ~Entry() {
        if (const auto open = _open.lock())
            open->erase(_fetch);
    }
    Q_DISABLE_COPY_MOVE(Entry)

private:
    const std::weak_ptr<Fetches> _open;
    const Fetch *const _fetch;
};

ArtworkSession::ArtworkSession(std::shared_ptr<Clock> clock)
    : _clock(std::move(clock)), _network(std::make_unique<QNetworkAccessManager>()),
      _open(std::make_shared<Fetches>()) {}

ArtworkSession::~ArtworkSession() = default;

QCoro::Task<QByteArray> ArtworkSession::data(QUrl url, std::stop_token stop) {
    if (stop.stop_requested())
        throw Cancelled();
    // Keeps the thread on which it goes on, but not the session, whose end is what ends it.
    const auto executor = SerialExecutor::current();
    auto fetch = std::make_shared<Fetch>(_clock);
    const Entry entry(_open, fetch);
    fetch->start(*_network, url);
    const auto future = fetch->future();
    const auto onStop = [executor, waiting = std::weak_ptr(fetch)] {
        executor->post([waiting] {
            if (const auto alive = waiting.lock())
                alive->cancel();
        });
    };
    fetch.reset();
    const std::stop_callback stopper(stop, onStop);
    const QByteArray bytes = co_await future;
    co_return bytes;
}

} // namespace zelk
