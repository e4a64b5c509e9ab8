#pragma once

#include <QFile>
#include <QHash>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QPointer>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QUrl>

namespace zelk {

/// An HTTPS server on this machine that answers each path as it is told.
class UpdateServer {
public:
    struct Reply {
        int status = 200;
        QByteArray body{};
        QByteArray location{}; ///< a redirection's
        qint64 announced = -1; ///< the length that it claims, if that isn't the body's
        bool silent = false;   ///< says nothing, or nothing after the body, and stays
    };

    UpdateServer() {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(certificate());
        QFile key(fixture("server.key"));
        if (key.open(QIODevice::ReadOnly))
            configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
        _server.setSslConfiguration(configuration);
        QObject::connect(&_server, &QTcpServer::pendingConnectionAvailable, &_server, [this] { serve(); });
        _server.listen(QHostAddress::LocalHost);
    }

    static QSslCertificate certificate() { return QSslCertificate::fromPath(fixture("server.crt")).value(0); }

    QUrl url(const QString &path) const {
        return QUrl(QStringLiteral("https://localhost:%1%2").arg(_server.serverPort()).arg(path));
    }
    void set(const QString &path, const QByteArray &body) { set(path, Reply{.body = body}); }
    void set(const QString &path, const Reply &reply) { _replies.insert(path, reply); }

    int requests(const QString &path) const { return static_cast<int>(_requests.count(path)); }
    int requests() const { return static_cast<int>(_requests.size()); }
    const QByteArray &lastRequest() const { return _lastRequest; }

private:
    static QString fixture(const char *name) { return QStringLiteral(UPDATE_FIXTURES "/") + QString::fromLatin1(name); }

    void serve() {
        while (QTcpSocket *socket = _server.nextPendingConnection()) {
            const auto read = [this, socket] {
                QByteArray request = socket->property("request").toByteArray() + socket->readAll();
                socket->setProperty("request", request);
                if (!request.contains("\r\n\r\n") || socket->property("answered").toBool())
                    return;
                socket->setProperty("answered", true);
                answer(*socket, request);
            };
            QObject::connect(socket, &QTcpSocket::readyRead, socket, read);
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            read();
        }
    }

    void answer(QTcpSocket &socket, const QByteArray &request) {
        const QString path = QString::fromLatin1(request.split(' ').value(1));
        _requests.append(path);
        _lastRequest = request;
        const Reply reply = _replies.value(path, Reply{.status = 404, .body = "There is nothing here."});
        if (reply.silent && reply.body.isEmpty())
            return;
        QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " As Told\r\nConnection: close\r\n";
        if (!reply.location.isEmpty())
            head += "Location: " + reply.location + "\r\n";
        const qint64 announced = reply.announced < 0 ? reply.body.size() : reply.announced;
        socket.write(head + "Content-Length: " + QByteArray::number(announced) + "\r\n\r\n" + reply.body);
        socket.flush();
        if (!reply.silent)
            socket.disconnectFromHost();
    }

    QSslServer _server;
    QHash<QString, Reply> _replies;
    QStringList _requests;
    QByteArray _lastRequest;
};

/// The network of somebody who trusts that server.
class TrustingNetwork final : public QNetworkAccessManager {
protected:
    QNetworkReply *createRequest(Operation operation, const QNetworkRequest &asked, QIODevice *body) override {
        QNetworkRequest request = asked;
        QSslConfiguration configuration = request.sslConfiguration();
        configuration.setCaCertificates({UpdateServer::certificate()});
        request.setSslConfiguration(configuration);
        return QNetworkAccessManager::createRequest(operation, request, body);
    }
};

} // namespace zelk
