#include "Platform/LoopbackPage.h"

#include <QHostAddress>
#include <QRandomGenerator>
#include <QTcpSocket>

#include <array>
#include <memory>
#include <utility>

namespace zelk {

namespace {

constexpr int connectionLimit = 32;

QByteArray randomPath() {
    std::array<quint32, 4> random{};
    QRandomGenerator::system()->fillRange(random.data(), qsizetype(random.size()));
    return '/' + QByteArray::fromRawData(reinterpret_cast<const char *>(random.data()), sizeof random).toHex();
}

QByteArrayView reason(int status) {
    switch (status) {
    case 200:
        return "OK";
    case 204:
        return "No Content";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 409:
        return "Conflict";
    case 411:
        return "Length Required";
    case 413:
        return "Content Too Large";
    case 415:
        return "Unsupported Media Type";
    case 431:
        return "Request Header Fields Too Large";
    default:
        return "Bad Request";
    }
}

} // namespace

LoopbackPage::LoopbackPage(Content content, Accept accept)
    : _content(std::move(content)), _accept(std::move(accept)), _path(randomPath()) {
    connect(&_server, &QTcpServer::newConnection, this, &LoopbackPage::take);
    _server.listen(QHostAddress::LocalHost);
}

QUrl LoopbackPage::url() const {
    return QUrl(QString::fromLatin1("http://" + authority() + _path));
}

QByteArray LoopbackPage::authority() const {
    return "127.0.0.1:" + QByteArray::number(_server.serverPort());
}

void LoopbackPage::take() {
    while (QTcpSocket *const socket = _server.nextPendingConnection()) {
        // A program that holds connections open and says nothing must not keep the user's browser out.
        if (_open.size() >= connectionLimit)
            _open.takeFirst()->abort();
        _open.append(socket);
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] { _open.removeOne(socket); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        socket->setReadBufferSize(HttpRequestReader::headLimit);
        const auto reader = std::make_shared<HttpRequestReader>();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, reader] { read(*socket, *reader); });
        read(*socket, *reader);
    }
}

void LoopbackPage::read(QTcpSocket &socket, HttpRequestReader &reader) {
    const bool wasOver = reader.isComplete() || reader.refusal() != 0;
    reader.feed(socket.readAll());
    if (wasOver)
        return;
    if (reader.refusal() != 0)
        send(socket, {.status = reader.refusal()});
    else if (reader.isComplete())
        send(socket, reply(reader.request()));
}

LoopbackPage::Reply LoopbackPage::reply(const HttpRequest &request) {
    if (request.header("host") != authority())
        return {.status = 403};
    if (request.target != _path)
        return {.status = 404};
    if (request.method == "GET")
        return {.status = 200, .body = _content.html, .type = "text/html; charset=utf-8"};
    if (request.method == "POST")
        return answerPost(request);
    return {.status = 405};
}

LoopbackPage::Reply LoopbackPage::answerPost(const HttpRequest &request) {
    if (request.header("origin") != "http://" + authority())
        return {.status = 403};
    if (_isAnswered)
        return {.status = 409};
    if (request.header("content-type") != "application/json")
        return {.status = 415};
    if (!_accept(request.body))
        return {.status = 400};
    _isAnswered = true;
    return {.status = 204};
}

void LoopbackPage::send(QTcpSocket &socket, const Reply &reply) const {
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + ' ' + reason(reply.status).toByteArray() +
                      "\r\nConnection: close"
                      "\r\nCache-Control: no-store"
                      "\r\nReferrer-Policy: no-referrer"
                      "\r\nX-Content-Type-Options: nosniff"
                      "\r\nContent-Security-Policy: " +
                      (reply.type.isEmpty() ? QByteArray("default-src 'none'") : _content.contentSecurityPolicy);
    if (!reply.type.isEmpty())
        head += "\r\nContent-Type: " + reply.type;
    if (reply.status != 204)
        head += "\r\nContent-Length: " + QByteArray::number(reply.body.size());
    socket.write(head + "\r\n\r\n" + reply.body);
    // The page may be gone before the loop turns again; what it says must not be.
    socket.flush();
    socket.disconnectFromHost();
}

} // namespace zelk
