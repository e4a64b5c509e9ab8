#pragma once

#include <QByteArray>
#include <QList>

#include <utility>

namespace zelk::engine::testing {

/// The bytes of a FLAC file without any sound that says it lasts `seconds`, with these comments as they stand: names
/// and values in any bytes. Readers of tags take it for whole.
inline QByteArray tinyFlac(int seconds, const QList<std::pair<QByteArray, QByteArray>> &comments) {
    const auto big = [](quint64 value, int bytes) {
        QByteArray text;
        for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
            text += static_cast<char>(value >> shift & 0xFF);
        }
        return text;
    };
    const auto little = [&big](qsizetype value) {
        QByteArray text = big(static_cast<quint64>(value), 4);
        std::reverse(text.begin(), text.end());
        return text;
    };
    constexpr quint64 rate = 44'100;
    const quint64 stream = rate << 44 | quint64(1) << 41 | quint64(15) << 36 | rate * static_cast<quint64>(seconds);
    const QByteArray info = big(4'096, 2) + big(4'096, 2) + big(0, 6) + big(stream, 8) + QByteArray(16, 0);
    QByteArray tags = little(4) + "none" + little(comments.size());
    for (const auto &[name, value] : comments) {
        tags += little(name.size() + 1 + value.size()) + name + '=' + value;
    }
    return "fLaC" + big(0, 1) + big(static_cast<quint64>(info.size()), 3) + info + big(0x84, 1) +
           big(static_cast<quint64>(tags.size()), 3) + tags;
}

/// The bytes of a silent MP3 file of that constant bitrate: 128 or 320.
inline QByteArray tinyMp3(int kbps, int seconds) {
    const int index = kbps == 320 ? 14 : 9;
    QByteArray frame("\xFF\xFB", 2);
    frame += static_cast<char>(index << 4);
    frame += static_cast<char>(0xC0); // mono
    frame += QByteArray(144 * kbps * 1'000 / 44'100 - frame.size(), 0);
    return frame.repeated(seconds * 44'100 / 1'152 + 1);
}

} // namespace zelk::engine::testing
