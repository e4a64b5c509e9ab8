#include "Transport/TextPool.h"

namespace zelk {

void TextPool::fill(Slot &slot, std::string_view utf8) {
    slot.text = textOfValidUtf8(utf8);
    slot.size = utf8.size();
    std::memcpy(slot.utf8, utf8.data(), utf8.size());
}

namespace {

// The compiler's vectors, since these few bytes are what a line mostly costs.
using Bytes __attribute__((vector_size(8))) = unsigned char;
using Units __attribute__((vector_size(16))) = char16_t;

void widen(const char *from, char16_t *to) {
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    const Units units = __builtin_convertvector(bytes, Units);
    std::memcpy(to, &units, sizeof units);
}

bool isAscii(std::string_view utf8) {
    quint64 seen = 0;
    std::size_t i = 0;
    for (; i + sizeof seen <= utf8.size(); i += sizeof seen) {
        quint64 bytes;
        std::memcpy(&bytes, utf8.data() + i, sizeof bytes);
        seen |= bytes;
    }
    for (; i < utf8.size(); ++i)
        seen |= static_cast<unsigned char>(utf8[i]);
    return (seen & 0x8080808080808080u) == 0;
}

} // namespace

QString textOfValidUtf8(std::string_view utf8) {
    if (!isAscii(utf8)) {
        QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
        // Qt takes a byte-order mark at the start for a mark. In the middle of a line it is a character of the text.
        if (utf8.starts_with("\xEF\xBB\xBF"))
            text.prepend(QChar(QChar::ByteOrderMark));
        return text;
    }
    QString text(static_cast<qsizetype>(utf8.size()), Qt::Uninitialized);
    auto *const out = reinterpret_cast<char16_t *>(text.data());
    constexpr std::size_t step = sizeof(Bytes);
    if (utf8.size() < step) {
        for (std::size_t i = 0; i < utf8.size(); ++i)
            out[i] = static_cast<unsigned char>(utf8[i]);
        return text;
    }
    for (std::size_t i = 0; i < utf8.size() - step; i += step)
        widen(utf8.data() + i, out + i);
    widen(utf8.data() + utf8.size() - step, out + utf8.size() - step);
    return text;
}

} // namespace zelk
