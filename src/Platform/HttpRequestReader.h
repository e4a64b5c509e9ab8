#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>

namespace zelk {

/// One request as it came over the wire.
struct HttpRequest {
    QByteArray method;
    QByteArray target;
    QList<std::pair<QByteArray, QByteArray>> headers; ///< the names in lower case
    QByteArray body;

    /// None without that header, which is named in lower case, and when it is there more than once.
    std::optional<QByteArray> header(QByteArrayView name) const;
};

/// Reads one request of HTTP/1.x from what arrives, and refuses what is none or too large: 16 KiB of head and as much
/// of body at most, the length of the body told beforehand.
class HttpRequestReader {
public:
    static constexpr qsizetype headLimit = 16 * 1024;
    static constexpr qsizetype bodyLimit = 16 * 1024;

    /// What came next. After the end of a request, and after a refusal, all further bytes are ignored.
    void feed(QByteArrayView bytes);

    bool isComplete() const { return _state == State::complete; }
    /// The status to refuse it with; 0 while there is none.
    int refusal() const { return _refusal; }
    const HttpRequest &request() const { return _request; }

private:
    enum class State : quint8 { head, body, complete, refused };

    void readHead();
    bool readRequestLine(QByteArrayView line);
    bool readHeader(QByteArrayView line);
    void startBody();
    void refuse(int status);

    State _state = State::head;
    int _refusal = 0;
    qsizetype _bodyLength = 0;
    QByteArray _bytes;
    HttpRequest _request;
};

} // namespace zelk
