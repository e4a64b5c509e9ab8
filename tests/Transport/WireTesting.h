#pragma once

#include "Transport/LineDecoder.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace zelk {

// JSON that can be read: 'text' for "text".
inline QByteArray operator""_json(const char *text, std::size_t size) {
    return QByteArray(text, static_cast<qsizetype>(size)).replace('\'', '"');
}

// A line in a buffer that goes on behind it with bytes that would show if they were read as part of it.
class PaddedLine {
public:
    explicit PaddedLine(const QByteArray &line)
        : _bytes(line + QByteArray(LineDecoder::padding, '}')), _size(line.size()) {}
    QByteArrayView view() const { return QByteArrayView(_bytes).first(_size); }

private:
    QByteArray _bytes;
    qsizetype _size;
};

// The event that a line is; none when it is undecodable.
inline std::optional<ServerEvent> eventOf(const QByteArray &line) {
    LineDecoder decoder;
    if (!decoder.parse(PaddedLine(line).view()))
        return std::nullopt;
    return decoder.event();
}

template<class Case>
std::optional<Case> eventOf(const QByteArray &line) {
    const std::optional<ServerEvent> event = eventOf(line);
    const Case *const payload = event ? caseOf<Case>(*event) : nullptr;
    return payload ? std::optional(*payload) : std::nullopt;
}

// Why a text is no T: the description of the failure; empty if it is one.
template<class T>
QString failureOf(const QByteArray &json) {
    try {
        readJSON<T>(json);
        return {};
    } catch (const JSONError &error) {
        return error.description();
    }
}

inline QByteArray wireFixture(const QString &path) {
    QFile file(QStringLiteral(WIRE_FIXTURES "/") + path);
    if (!file.open(QFile::ReadOnly))
        return {};
    QByteArray line = file.readAll();
    if (line.endsWith('\n'))
        line.chop(1);
    return line;
}

inline QStringList wireFixtures(const QString &folder) {
    return QDir(QStringLiteral(WIRE_FIXTURES "/") + folder).entryList(QDir::Files, QDir::Name);
}

} // namespace zelk
