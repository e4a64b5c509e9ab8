#pragma once

#include "Transport/JSONReader.h"
#include "Transport/TextPool.h"

#include <simdjson.h>

#include <cstring>

// The ways from JSON text to records. For the wire library's own files: what includes this includes the whole parser.
namespace zelk {

// What the parser leaves behind: a tape of 64-bit words, each with its type in the high byte and a payload below, and
// the texts, each behind its 32-bit length. An object or list says where it ends, so that it can be stepped over. (The
// layout is simdjson's documented one; walking it takes half the instructions that its element type takes.)
struct JSONTape {
    const std::uint64_t *words;
    const std::uint8_t *texts;
    TextPool &pool;
};

// A place in a parsed line, for readers: see ValueNode for what each member does.
class LineNode {
public:
    LineNode() = default;
    LineNode(const JSONTape &tape, const std::uint64_t *word) : _tape(&tape), _word(word) {}

    bool isAbsent() const { return !_word; }
    bool isNull() const { return type() == 'n'; }
    bool isObject() const { return type() == '{'; }
    bool isArray() const { return type() == '['; }
    QLatin1StringView kind() const;

    Q_ALWAYS_INLINE bool text(std::string_view &out) const {
        if (type() != '"')
            return false;
        out = textAt(_word);
        return true;
    }
    Q_ALWAYS_INLINE bool read(bool &out) const {
        out = type() == 't';
        return out || type() == 'f';
    }
    Q_ALWAYS_INLINE bool read(double &out) const {
        if (type() != 'd')
            return readWholeNumber(out);
        out = payload<double>();
        return true;
    }
    Q_ALWAYS_INLINE bool read(QString &out) const {
        std::string_view utf8;
        if (!text(utf8))
            return false;
        out = textOfValidUtf8(utf8);
        return true;
    }
    Q_ALWAYS_INLINE bool readShared(QString &out) const {
        std::string_view utf8;
        if (!text(utf8))
            return false;
        out = TextPool::takes(utf8) ? QString(_tape->pool.text(utf8)) : textOfValidUtf8(utf8);
        return true;
    }
    Q_ALWAYS_INLINE bool read(qint64 &out) const {
        if (type() != 'l')
            return readWholeFloat(out);
        out = payload<std::int64_t>();
        return true;
    }

    // Records mostly arrive with their keys in the order of their fields, so the search starts behind the last find.
    // All keys before that place have been found already, so the first of equal keys is found wherever it is.
    class Members {
    public:
        Members(const JSONTape &tape, const std::uint64_t *object)
            : _tape(&tape), _next(object + 1), _end(tape.words + std::uint32_t(*object) - 1) {}
        Q_ALWAYS_INLINE LineNode find(QLatin1StringView key) {
            const std::uint64_t *const member = search(key);
            if (member == _end)
                return {};
            if (member == _next)
                _next = after(*_tape, member + 1);
            return {*_tape, member + 1};
        }
        // Whether there is such a key, without looking any closer.
        bool contains(QLatin1StringView key) const { return search(key) != _end; }

    private:
        Q_ALWAYS_INLINE const std::uint64_t *search(QLatin1StringView key) const {
            const auto size = static_cast<std::uint32_t>(key.size());
            const std::uint64_t *member = _next;
            for (; member != _end; member = after(*_tape, member + 1)) {
                const std::uint8_t *const text = _tape->texts + (*member & payloadMask);
                std::uint32_t textSize;
                std::memcpy(&textSize, text, sizeof textSize);
                if (textSize == size && std::memcmp(text + sizeof textSize, key.data(), size) == 0)
                    break;
            }
            return member;
        }
        const JSONTape *_tape;
        const std::uint64_t *_next;
        const std::uint64_t *_end;
        friend class LineNode;
    };
    Members members() const { return {*_tape, _word}; }

    std::size_t count() const { return (*_word >> 32) & 0xFFFFFF; } // 2^24 and more are no longer counted
    template<class Function>
    bool forEach(Function function) const {
        const std::uint64_t *const end = _tape->words + std::uint32_t(*_word) - 1;
        for (const std::uint64_t *element = _word + 1; element != end; element = after(*_tape, element)) {
            if (!function(LineNode(*_tape, element)))
                return false;
        }
        return true;
    }
    // Calls function(key, node) for each member of an object.
    template<class Function>
    void forEachMember(Function function) const {
        const Members members = this->members();
        for (const std::uint64_t *key = members._next; key != members._end; key = after(*_tape, key + 1))
            function(LineNode(*_tape, key).textAt(key), LineNode(*_tape, key + 1));
    }
    JSONValue toValue() const;

private:
    static constexpr std::uint64_t payloadMask = 0x00FF'FFFF'FFFF'FFFF;

    char type() const { return static_cast<char>(*_word >> 56); }
    template<class Number>
    Number payload() const {
        Number number;
        std::memcpy(&number, _word + 1, sizeof number);
        return number;
    }
    std::string_view textAt(const std::uint64_t *word) const {
        const std::uint8_t *const text = _tape->texts + (*word & payloadMask);
        std::uint32_t size;
        std::memcpy(&size, text, sizeof size);
        return {reinterpret_cast<const char *>(text) + sizeof size, size};
    }
    static const std::uint64_t *after(const JSONTape &tape, const std::uint64_t *word) {
        switch (*word >> 56) {
        case '{':
        case '[':
            return tape.words + std::uint32_t(*word);
        case 'l':
        case 'u':
        case 'd':
            return word + 2;
        default:
            return word + 1;
        }
    }
    bool readWholeNumber(double &out) const;
    bool readWholeFloat(qint64 &out) const;

    const JSONTape *_tape = nullptr;
    const std::uint64_t *_word = nullptr; // null when absent
};

// Parses JSON text, and keeps its memory for the next one. A parsed document lives until the next call.
class LineParser {
public:
    // Of text that has simdjson::SIMDJSON_PADDING readable bytes behind it. Absent, and the failure noted, when it
    // isn't JSON. A number that doesn't fit into 64 bits is read as a float.
    LineNode parse(QByteArrayView json, JSONFailure &failure);
    // Of any text.
    LineNode parseCopy(QByteArrayView json, JSONFailure &failure);

private:
    simdjson::error_code reserve(std::size_t size);

    simdjson::dom::parser _parser;
    TextPool _pool;
    JSONTape _tape{nullptr, nullptr, _pool};
    QByteArray _copy;
};

} // namespace zelk
