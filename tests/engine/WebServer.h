#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace zelk::engine::testing {

/// An HTTP server on this machine with a thread of its own, since a test that waits for its engine serves nobody.
class WebServer {
public:
    /// Gives the whole answer to a path; an empty one is never given.
    using Answer = std::function<QByteArray(const QString &path)>;

    explicit WebServer(Answer answer) : _answer(std::move(answer)) {
        std::promise<quint16> port;
        auto listening = port.get_future();
        _thread = std::thread([this, &port] { serve(port); });
        _port = listening.get();
    }
    ~WebServer() {
        _stop = true;
        _thread.join();
    }
    WebServer(const WebServer &) = delete;
    WebServer &operator=(const WebServer &) = delete;

    QString url(const QString &path, const QString &scheme = QStringLiteral("http")) const {
        return QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(_port).arg(path);
    }
    int asked(const QString &path) const {
        const std::lock_guard lock(_mutex);
        return _asked.value(path);
    }
    int askedInAll() const {
        const std::lock_guard lock(_mutex);
        int all = 0;
        for (const int count : _asked) {
            all += count;
        }
        return all;
    }

    static QByteArray ok(const QByteArray &body, const QByteArray &head = {}) {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\n" + head +
               "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
    static QByteArray status(const QByteArray &line, const QByteArray &head = {}) {
        return "HTTP/1.1 " + line + "\r\nConnection: close\r\n" + head + "Content-Length: 0\r\n\r\n";
    }

private:
    void serve(std::promise<quint16> &port) {
        QTcpServer server;
        std::vector<std::unique_ptr<QTcpSocket>> silent;
        if (!server.listen(QHostAddress::LocalHost)) {
            qFatal("no port to listen on");
        }
        port.set_value(server.serverPort());
        while (!_stop) {
            if (!server.hasPendingConnections() && !server.waitForNewConnection(10)) {
                continue;
            }
            std::unique_ptr<QTcpSocket> socket(server.nextPendingConnection());
            if (!socket->waitForReadyRead(5'000)) {
                continue;
            }
            const QString path = QString::fromLatin1(socket->readAll().split(' ').value(1));
            {
                const std::lock_guard lock(_mutex);
                ++_asked[path];
            }
            const QByteArray answer = _answer(path);
            if (answer.isEmpty()) {
                silent.push_back(std::move(socket));
                continue;
            }
            socket->write(answer);
            while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(5'000)) {
            }
            socket->disconnectFromHost();
            if (socket->state() != QAbstractSocket::UnconnectedState) {
                socket->waitForDisconnected(1'000);
            }
        }
    }

    const Answer _answer;
    std::atomic<bool> _stop = false;
    mutable std::mutex _mutex; // guards the next
    QHash<QString, int> _asked;
    quint16 _port = 0;
    std::thread _thread;
};

} // namespace zelk::engine::testing
