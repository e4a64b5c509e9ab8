#include "Playlists/TextDecoding.h"

#include <QStringDecoder>

namespace zelk::engine {

namespace {

QString fromWindows1252(const QByteArray &bytes) {
    // The rows 0x80 to 0x9F of the code page; the five unassigned codes stay control characters.
    static constexpr char16_t upper[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                           0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                           0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                           0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
    QString text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += QChar(code >= 0x80 && code < 0xA0 ? upper[code - 0x80] : code);
    }
    return text;
}

} // namespace

QString decodeText(const QByteArray &bytes) {
    if (bytes.startsWith("\xFF\xFE")) {
        return QStringDecoder(QStringDecoder::Utf16LE)(bytes.sliced(2));
    }
    if (bytes.startsWith("\xFE\xFF")) {
        return QStringDecoder(QStringDecoder::Utf16BE)(bytes.sliced(2));
    }
    const QByteArray plain = bytes.startsWith("\xEF\xBB\xBF") ? bytes.sliced(3) : bytes;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(plain);
    return decoder.hasError() ? fromWindows1252(plain) : text;
}

} // namespace zelk::engine
