#pragma once

#include "Platform/HttpRequestReader.h"

#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

#include <functional>

class QTcpSocket;

namespace zelk {

/// One page for the browser of this machine's user, and one answer from it.
///
/// It listens on 127.0.0.1 alone, at a port that the system chooses and a path of 128 random bits; whoever doesn't know
/// both gets nothing. Of too many connections the newest are kept. A page of another origin, and one that reached this
/// address by a name, is refused. It belongs to the main thread.
class LoopbackPage : public QObject {
    Q_OBJECT

public:
    struct Content {
        QByteArray html;
        QByteArray contentSecurityPolicy;
    };
    /// Whether this is the answer, JSON of any kind; one that isn't is refused and the page goes on waiting.
    using Accept = std::function<bool(const QByteArray &body)>;

    LoopbackPage(Content content, Accept accept);

    /// False, with `errorText` saying why, when no port could be had.
    bool isListening() const { return _server.isListening(); }
    QString errorText() const { return _server.errorString(); }
    QUrl url() const;

private:
    struct Reply {
        int status = 0;
        QByteArray body = {};
        QByteArray type = {};
    };

    void take();
    void read(QTcpSocket &socket, HttpRequestReader &reader);
    Reply reply(const HttpRequest &request);
    Reply answerPost(const HttpRequest &request);
    void send(QTcpSocket &socket, const Reply &reply) const;
    QByteArray authority() const;

    const Content _content;
    const Accept _accept;
    const QByteArray _path;
    QList<QTcpSocket *> _open; ///< the oldest first; it must outlive the server, whose connections they are
    QTcpServer _server;
    bool _isAnswered = false;
};

} // namespace zelk
