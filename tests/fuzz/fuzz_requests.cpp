// Requests as the engine reads them: one line is either a request or the reason for its refusal.
#include "Fuzzing.h"

#include "Transport/HelperProtocolEnvelope.h"
#include "Transport/LineDecoder.h"

namespace zelk::fuzz {

namespace {

void checkRequest(const RequestEnvelope &envelope) {
    const QByteArray line = envelope.request.encodedLine(envelope.id);
    holds(!line.contains('\n'), "a request is one line");
    holds(line == writeJSON(envelope), "there is one way to write a request");
    const auto again = readRequestLine(line);
    const auto *const same = std::get_if<RequestEnvelope>(&again);
    holds(same && *same == envelope, "a request that is written reads back the same");
}

/// The reply of which the engine makes an answer to a line that is no request.
void checkRefusal(const RequestRefusal &refusal) {
    holds(!refusal.message.isEmpty(), "a refusal has a reason");
    holds(refusal.code == EngineErrorCode::badRequest || refusal.code == EngineErrorCode::unknownMethod ||
              refusal.code == EngineErrorCode::invalidParams,
          "a refusal is the line's own fault");
    holds(refusal.id || refusal.code == EngineErrorCode::badRequest, "who can't be answered has sent no request");
    if (!refusal.id)
        return;
    const QByteArray line =
        encodedFailure(*refusal.id, refusal.code, refusal.message) + QByteArray(LineDecoder::padding, ' ');
    LineDecoder decoder;
    holds(decoder.parse(QByteArrayView(line).chopped(LineDecoder::padding)), "a refusal is JSON");
    const auto reply = decoder.response();
    holds(reply && reply->id == refusal.id && !reply->ok && reply->error, "a refusal is a reply without success");
    holds(reply->error->message == refusal.message && reply->error->code == QString(wireName(refusal.code)),
          "a refusal reads back the same");
}

} // namespace

void fuzz(QByteArrayView input) {
    const auto read = readRequestLine(input);
    holds(readRequestLine(input) == read, "a line means the same each time");
    if (const auto *const envelope = std::get_if<RequestEnvelope>(&read))
        checkRequest(*envelope);
    else
        checkRefusal(std::get<RequestRefusal>(read));
}

} // namespace zelk::fuzz
