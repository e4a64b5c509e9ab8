#include "Playlists/TextReader.h"

#include <QByteArray>

namespace zelk::engine {

namespace {

constexpr qint64 stretch = 1 << 16;

bool isWholeUtf8(QIODevice &device) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    for (QByteArray bytes = device.read(stretch); !bytes.isEmpty(); bytes = device.read(stretch)) {
        const QString decoded = decoder(bytes);
        if (decoder.hasError()) {
            return false;
        }
    }
    const QString end = decoder(QByteArrayView("\n")); // shows whether a letter was left unfinished
    return !decoder.hasError();
}

void appendWindows1252(const QByteArray &bytes, QString &text) {
    // The rows 0x80 to 0x9F of the code page; the five unassigned codes stay control characters.
    static constexpr char16_t upper[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                           0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                           0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                           0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
    text.reserve(text.size() + bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += QChar(code >= 0x80 && code < 0xA0 ? upper[code - 0x80] : code);
    }
}

/// Whether a byte can be the first of a text: a sign, a letter, or white space.
bool beginsText(char byte) {
    return (byte >= ' ' && byte < 0x7F) || byte == '\t' || byte == '\n' || byte == '\r';
}

QStringDecoder decoderFor(QIODevice &device) {
    const QByteArray head = device.read(3);
    qsizetype mark = 0;
    QStringDecoder decoder;
    if (head.startsWith("\xFF\xFE")) {
        mark = 2;
        decoder = QStringDecoder(QStringDecoder::Utf16LE);
    } else if (head.startsWith("\xFE\xFF")) {
        mark = 2;
        decoder = QStringDecoder(QStringDecoder::Utf16BE);
    } else if (head.size() > 1 && beginsText(head[0]) && head[1] == '\0') {
        decoder = QStringDecoder(QStringDecoder::Utf16LE);
    } else if (head.size() > 1 && head[0] == '\0' && beginsText(head[1])) {
        decoder = QStringDecoder(QStringDecoder::Utf16BE);
    } else {
        mark = head.startsWith("\xEF\xBB\xBF") ? 3 : 0;
        device.seek(mark);
        if (isWholeUtf8(device)) {
            decoder = QStringDecoder(QStringDecoder::Utf8);
        }
    }
    device.seek(mark);
    return decoder;
}

} // namespace

TextReader::TextReader(QIODevice &device) : _device(device), _decoder(decoderFor(device)) {}

bool TextReader::readMore(QString &text) {
    // Bytes that end within a letter bring nothing yet.
    for (const qsizetype before = text.size(); text.size() == before;) {
        const QByteArray bytes = _device.read(stretch);
        if (bytes.isEmpty()) {
            return false;
        }
        if (_decoder.isValid()) {
            text += _decoder(bytes);
        } else {
            appendWindows1252(bytes, text);
        }
    }
    return true;
}

} // namespace zelk::engine
