#pragma once

#include <QString>

#include <array>
#include <cstring>
#include <string_view>

namespace zelk {

// Text that the parser has found to be valid UTF-8.
QString textOfValidUtf8(std::string_view utf8);

// Short texts that were read lately. A run's lines say the same few over and over (the run's id, the ids of the tracks
// in hand, a format, a source), and a shared QString costs a fraction of a new one.
class TextPool {
public:
    // The bytes must go on, whatever they hold, for 8 behind the text: in a parser's memory they do.
    Q_ALWAYS_INLINE const QString &text(std::string_view utf8) {
        Slot &slot = _slots[slotOf(utf8)];
        if (slot.size != utf8.size() || !sameBytes(slot.utf8, utf8))
            fill(slot, utf8);
        return slot.text;
    }
    static bool takes(std::string_view utf8) { return utf8.size() <= longest && !utf8.empty(); }

private:
    static constexpr std::size_t longest = 64;
    static constexpr int bits = 7;
    struct Slot {
        char utf8[longest];
        std::size_t size = 0;
        QString text;
    };

    static std::size_t slotOf(std::string_view utf8) {
        quint64 first = 0;
        quint64 last = 0;
        std::memcpy(&first, utf8.data(), sizeof first);
        if (utf8.size() < sizeof first)
            first <<= 8 * (sizeof first - utf8.size()); // leaves what lies behind the text out; little-endian
        else
            std::memcpy(&last, utf8.data() + utf8.size() - sizeof last, sizeof last);
        const quint64 mixed = (first ^ (last << 29 | last >> 35)) * 0x9E3779B97F4A7C15u;
        return static_cast<std::size_t>(mixed >> (64 - bits));
    }
    static bool sameBytes(const char *stored, std::string_view utf8) {
        quint64 a;
        quint64 b;
        if (utf8.size() < sizeof a)
            return std::memcmp(stored, utf8.data(), utf8.size()) == 0;
        const std::size_t lastWord = utf8.size() - sizeof a;
        for (std::size_t i = 0; i < lastWord; i += sizeof a) {
            std::memcpy(&a, stored + i, sizeof a);
            std::memcpy(&b, utf8.data() + i, sizeof b);
            if (a != b)
                return false;
        }
        std::memcpy(&a, stored + lastWord, sizeof a);
        std::memcpy(&b, utf8.data() + lastWord, sizeof b);
        return a == b;
    }
    static void fill(Slot &slot, std::string_view utf8);

    std::array<Slot, 1u << bits> _slots;
};

} // namespace zelk
