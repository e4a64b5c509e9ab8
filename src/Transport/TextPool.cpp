#include "Transport/TextPool.h"

namespace zelk {

void TextPool::fill(Slot &slot, std::string_view utf8) {
    slot.text = textOfValidUtf8(utf8);
    slot.size = utf8.size();
    std::memcpy(slot.utf8, utf8.data(), utf8.size());
}

QString textOfValidUtf8(std::string_view utf8) {
    const auto size = static_cast<qsizetype>(utf8.size());
    unsigned char seen = 0;
    for (const char byte : utf8)
        seen |= static_cast<unsigned char>(byte);
    if (seen < 0x80) {
        QString text(size, Qt::Uninitialized);
        auto *out = reinterpret_cast<char16_t *>(text.data());
        for (qsizetype i = 0; i < size; ++i)
            out[i] = static_cast<unsigned char>(utf8[static_cast<std::size_t>(i)]);
        return text;
    }
    QString text = QString::fromUtf8(utf8.data(), size);
    // Qt takes a byte-order mark at the start for a mark. In the middle of a line it is a character of the text.
    if (utf8.starts_with("\xEF\xBB\xBF"))
        text.prepend(QChar(QChar::ByteOrderMark));
    return text;
}

} // namespace zelk
