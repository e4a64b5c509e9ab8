#include "ChaosLines.h"

#include <QList>

namespace zelk::chaos {

namespace {

QByteArray track(const QString &tag) {
    return R"({"id":"p#0","title":")" + tag.toUtf8() +
           R"(","artist":"A","durationSec":3,"artwork":{"kind":"none"},"onDisk":"present"})";
}

/// "r12", or the same text with its letters escaped.
QByteArray idText(std::uint64_t id, Chance &chance) {
    const QByteArray plain = 'r' + QByteArray::number(static_cast<qulonglong>(id));
    if (!chance.oneIn(8))
        return plain;
    QByteArray escaped;
    for (const char letter : plain)
        escaped += "\\u00" + QByteArray::number(static_cast<int>(letter), 16);
    return escaped;
}

} // namespace

QByteArray replyLine(Answer answer, std::uint64_t id, const QString &tag, Chance &chance) {
    const QByteArray head = R"("id":")" + idText(id, chance) + '"';
    QByteArray rest;
    switch (answer) {
    case Answer::Wrapped:
        rest = R"("ok":true,"result":{"tracks":[)" + track(tag) + "]}";
        break;
    case Answer::Bare:
        rest = R"("ok":true,"result":[)" + track(tag) + "]";
        break;
    case Answer::Nothing:
        rest = R"("ok":true)";
        break;
    case Answer::Null:
        rest = R"("ok":true,"result":null,"error":null)";
        break;
    case Answer::Failure:
        rest = R"("ok":false,"error":{"code":"internal","message":")" + tag.toUtf8() + R"(","data":[1]})";
        break;
    case Answer::FailureWithoutWord:
        rest = R"("ok":false)";
        break;
    }
    if (chance.oneIn(4))
        return "{ " + rest + " , \"newer\": {\"id\":\"r0\"}," + head + '}';
    return '{' + head + ',' + rest + '}';
}

QByteArray eventLine(const QString &message, bool isUnknown) {
    if (isUnknown)
        return R"({"event":")" + message.toUtf8() + R"(","data":[{"ok":true}]})";
    return R"({"event":"log","data":{"level":"info","message":")" + message.toUtf8() + R"("}})";
}

QByteArray junkLine(Chance &chance) {
    static const QList<QByteArray> kinds{
        "no JSON at all",
        "   ",
        "{",
        "null",
        "[1,2]",
        "42",
        R"("text")",
        "{}",
        R"({"id":"r1"})",
        R"({"id":7,"ok":true})",
        R"({"id":"r1","ok":"yes"})",
        R"({"ok":true})",
        R"({"id":"r99999","ok":true})",
        R"({"id":"","ok":true})",
        R"({"event":7,"data":{}})",
        R"({"event":"log"})",
        R"({"event":"step","data":{}})",
        R"({"event":"log","data":{"level":"loud","message":"m"}})",
        R"({"event":"log","correlationId":3,"data":{"level":"info","message":"m"}})",
        "\xef\xbb\xbf"
        R"({"event":"log","data":{"level":"info","message":"m"}})",
        R"({"event":"log","data":{"level":"info","message":"\ud800"}})",
        R"({"event":"log","data":{"level":"info","message":"m"}}})",
        "{\"event\":\"log\",\"data\":{\"level\":\"info\",\"message\":\"a\tb\"}}",
        QByteArray("a\0b", 3),
        "\xff\xfe",
        "\xf0\x9f\x8e\xa7",
    };
    if (chance.oneIn(40))
        return QByteArray(1000 + chance.below(3000), '[');
    if (chance.oneIn(40))
        return QByteArray(20000 + chance.below(200000), 'j');
    return chance.of(kinds);
}

QByteArray spoilt(QByteArray line, Chance &chance) {
    return line.insert(chance.below(static_cast<int>(line.size())), chance.oneIn(2) ? '\x01' : '\xff');
}

} // namespace zelk::chaos
