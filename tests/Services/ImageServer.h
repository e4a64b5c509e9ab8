#pragma once

#include <QHash>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

namespace zelk {

// An HTTP server on this machine that answers each path with the bytes that it was told, and says nothing to others.
class ImageServer : public QTcpServer {
public:
    ImageServer() {
        if (!listen(QHostAddress::LocalHost))
            qFatal("no port to listen on");
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
                connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                    ++gone;
                    socket->deleteLater();
                });
            }
        });
    }

    QUrl url(const QString &path) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path));
    }
    static QByteArray response(const QByteArray &body, const QByteArray &status = "200 OK",
                               const QByteArray &head = "Content-Type: image/png\r\n") {
        return "HTTP/1.1 " + status + "\r\n" + head + "Content-Length: " + QByteArray::number(body.size()) +
               "\r\nConnection: close\r\n\r\n" + body;
    }

    QHash<QString, QByteArray> answers; // whole responses by path
    QHash<QString, int> asked;
    QByteArrayList requests;     // as they came
    QList<QTcpSocket *> waiting; // those who asked for what has no answer
    int gone = 0;

private:
    void read(QTcpSocket *socket) {
        const QByteArray request = socket->readAll();
        const QString path = QString::fromLatin1(request.split(' ').value(1));
        ++asked[path];
        requests.append(request);
        if (answers.contains(path)) {
            socket->write(answers[path]);
            socket->disconnectFromHost();
        } else {
            waiting.append(socket);
        }
    }
};

} // namespace zelk
