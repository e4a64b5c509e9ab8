#pragma once

#include <QHostAddress>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

namespace zelk {

/// A server on this machine that answers each request with the same bytes, or never.
class LocalServer final : public QTcpServer {
public:
    /// Empty: it takes connections and says nothing.
    explicit LocalServer(QByteArray answer) : _answer(std::move(answer)) {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                requests.append(socket->readAll());
                if (_answer.isEmpty())
                    return;
                socket->write(_answer);
                socket->disconnectFromHost();
            });
        });
    }

    static QByteArray response(int status, const QByteArray &body) {
        return "HTTP/1.1 " + QByteArray::number(status) +
               " Said\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
    QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/applemusic/dev-token").arg(serverPort())); }

    QList<QByteArray> requests;

private:
    const QByteArray _answer;
};

} // namespace zelk
