// What a browser, or anything else on this machine, sends to the page for signing in. The input's first byte says how
// the rest, the request, is cut.
#include "Fuzzing.h"

#include "Platform/HttpRequestReader.h"

#include <algorithm>

namespace zelk::fuzz {

namespace {

HttpRequestReader readingOf(QByteArrayView bytes, qsizetype atOnce) {
    HttpRequestReader reader;
    for (qsizetype at = 0; at < bytes.size(); at += atOnce) {
        reader.feed(bytes.sliced(at, std::min(atOnce, bytes.size() - at)));
        holds(!(reader.isComplete() && reader.refusal() != 0), "a request is read or refused, never both");
    }
    return reader;
}

bool isSame(const HttpRequest &a, const HttpRequest &b) {
    return a.method == b.method && a.target == b.target && a.headers == b.headers && a.body == b.body;
}

void checkRequest(const HttpRequest &request) {
    holds(!request.method.isEmpty() && !request.target.isEmpty(), "a request says what it wants");
    holds(!request.target.contains('\n'), "a target ends with its line");
    holds(request.body.size() <= HttpRequestReader::bodyLimit, "a body keeps to its limit");
    qsizetype head = 0;
    for (const auto &[name, value] : request.headers) {
        holds(!name.isEmpty() && name == name.toLower(), "a header has a name in lower case");
        holds(!name.contains('\n') && !value.contains('\n'), "a header ends with its line");
        head += name.size() + value.size();
    }
    holds(head <= HttpRequestReader::headLimit, "a head keeps to its limit");
}

} // namespace

void fuzz(QByteArrayView input) {
    if (input.isEmpty())
        return;
    const qsizetype atOnce = 1 + static_cast<quint8>(input.front());
    const auto bytes = input.sliced(1);
    HttpRequestReader whole = readingOf(bytes, std::max<qsizetype>(bytes.size(), 1));
    const HttpRequestReader cut = readingOf(bytes, atOnce);
    holds(whole.isComplete() == cut.isComplete() && whole.refusal() == cut.refusal(),
          "what becomes of a request doesn't depend on how it is cut");
    if (!whole.isComplete())
        return;
    holds(isSame(whole.request(), cut.request()), "nor does what it says");
    checkRequest(whole.request());
    whole.feed("GET /other HTTP/1.1\r\n\r\n");
    holds(whole.isComplete() && isSame(whole.request(), cut.request()), "what comes behind it changes nothing");
}

} // namespace zelk::fuzz
