#include "Files/Download.h"

#include "Files/Stopped.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

#include <exception>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr int mostRedirections = 8;
/// What may wait in memory for the disk.
constexpr qint64 bufferSize = 1'000'000;

/// One download, on the thread whose loop it runs.
class Download {
public:
    Download(const QUrl &url, const DownloadLimits &limits, const DownloadSink &sink)
        : _url(url), _limits(limits), _sink(sink) {}

    void carryOut(const std::stop_token &stop) {
        QNetworkRequest request(_url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
        request.setMaximumRedirectsAllowed(mostRedirections);
        request.setRawHeader("User-Agent", "zelk");
        request.setRawHeader("Accept-Encoding", "identity"); // so that the length told is the length sent
        _reply.reset(_network.get(request));
        _reply->setReadBufferSize(bufferSize);
        QTimer silence;
        QTimer whole;
        silence.setSingleShot(true);
        whole.setSingleShot(true);
        QObject::connect(_reply.get(), &QNetworkReply::readyRead, &_loop, [&] {
            silence.start(_limits.silence);
            guarded([this] { take(); });
        });
        QObject::connect(_reply.get(), &QNetworkReply::metaDataChanged, &_loop, [&] {
            silence.start(_limits.silence);
            guarded([this] { heedLength(); });
        });
        QObject::connect(_reply.get(), &QNetworkReply::finished, &_loop, &QEventLoop::quit);
        for (QTimer *timer : {&silence, &whole}) {
            QObject::connect(timer, &QTimer::timeout, &_loop, [&] { guarded([this] { giveUp(); }); });
        }
        silence.start(_limits.silence);
        if (_limits.whole.count() > 0) {
            whole.start(_limits.whole);
        }
        const std::stop_callback onStop(
            stop, [this] { QMetaObject::invokeMethod(&_loop, &QEventLoop::quit, Qt::QueuedConnection); });
        if (!_reply->isFinished()) {
            _loop.exec();
        }
        QObject::disconnect(_reply.get(), nullptr, &_loop, nullptr);
        if (stop.stop_requested()) {
            throw Stopped();
        }
        if (_failure) {
            std::rethrow_exception(_failure);
        }
        heedOutcome();
        take();
    }

private:
    template<class Function>
    void guarded(Function function) {
        if (_failure) {
            return;
        }
        try {
            function();
        } catch (...) { // not through the loop
            _failure = std::current_exception();
            _loop.quit();
        }
    }

    int status() const { return _reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

    void take() {
        const QByteArray bytes = _reply->readAll();
        if (status() != 200 || bytes.isEmpty()) {
            return;
        }
        _done += bytes.size();
        if (_done > _limits.bytes) {
            tooLarge();
        }
        _sink.bytes(bytes);
        if (_sink.progress) {
            _sink.progress(_done, std::max(_total, _total < 0 ? -1 : _done));
        }
    }

    void heedLength() {
        bool told = false;
        const qint64 length = _reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(&told);
        if (status() == 200 && told) {
            _total = length;
            if (length > _limits.bytes) {
                tooLarge();
            }
        }
    }

    [[noreturn]] void tooLarge() const {
        throw DownloadFailed(u"%1 is larger than %2 MB, the most that is downloaded. Download it yourself and give its"
                             " path."_s.arg(shown())
                                 .arg(_limits.bytes / 1'000'000));
    }

    [[noreturn]] void giveUp() const {
        throw DownloadFailed(u"%1 doesn't answer any more. Try again later, or choose another match."_s.arg(shown()));
    }

    void heedOutcome() const {
        const int code = status();
        const QNetworkReply::NetworkError error = _reply->error();
        if (error == QNetworkReply::NoError && code == 200) {
            return;
        }
        if (error == QNetworkReply::SslHandshakeFailedError) {
            throw DownloadFailed(u"There is no safe connection to %1 (%2). Check the address, or download the file"
                                 " yourself and give its path."_s.arg(shown(), _reply->errorString()));
        }
        if (error == QNetworkReply::TooManyRedirectsError || error == QNetworkReply::InsecureRedirectError ||
            error == QNetworkReply::ProtocolUnknownError) {
            throw DownloadFailed(u"%1 leads on to where no file can be fetched from (%2). Check the address."_s.arg(
                shown(), _reply->errorString()));
        }
        if (code >= 300 || (code > 0 && error == QNetworkReply::NoError)) {
            const QString phrase = _reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
            throw DownloadFailed(u"%1 answered %2. Check the address, or choose another match."_s.arg(
                shown(), u"%1 %2"_s.arg(code).arg(phrase).trimmed()));
        }
        throw DownloadFailed(u"%1 can't be fetched (%2). Check the address and your connection, then try again."_s.arg(
            shown(), _reply->errorString()));
    }

    QString shown() const { return _url.toString(QUrl::RemoveUserInfo); }

    struct Later {
        void operator()(QNetworkReply *reply) const {
            reply->abort();
            delete reply;
        }
    };

    const QUrl _url;
    const DownloadLimits _limits;
    const DownloadSink &_sink;
    QNetworkAccessManager _network;
    QEventLoop _loop;
    std::unique_ptr<QNetworkReply, Later> _reply;
    std::exception_ptr _failure;
    qint64 _done = 0;
    qint64 _total = -1;
};

} // namespace

bool isWebAddress(const QString &text) {
    return text.startsWith("http://"_L1, Qt::CaseInsensitive) || text.startsWith("https://"_L1, Qt::CaseInsensitive);
}

void download(const QUrl &url, const DownloadLimits &limits, const DownloadSink &sink, std::stop_token stop) {
    if (!url.isValid() || url.host().isEmpty() || !isWebAddress(url.toString())) {
        throw DownloadFailed(u"%1 isn't the address of a file. Check it."_s.arg(url.toString()));
    }
    Download(url, limits, sink).carryOut(stop);
}

} // namespace zelk::engine
