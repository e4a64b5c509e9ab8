#pragma once

#include "Transport/JSONReader.h"
#include "Transport/TextPool.h"

#include <simdjson.h>

// The ways from JSON text to records. For the wire library's own files: what includes this includes the whole parser.
namespace zelk {

// A place in a parsed line, for readers: see ValueNode for what each member does.
class LineNode {
public:
    LineNode() = default;
    LineNode(simdjson::dom::element element, TextPool &pool) : _element(element), _pool(&pool) {}

    bool isAbsent() const { return !_pool; }
    bool isNull() const { return _element.is_null(); }
    bool isObject() const { return _element.is_object(); }
    bool isArray() const { return _element.is_array(); }
    QLatin1StringView kind() const;

    bool text(std::string_view &out) const { return !_element.get(out); }
    bool read(bool &out) const { return !_element.get(out); }
    bool read(double &out) const { return !_element.get(out); }
    bool read(QString &out) const {
        std::string_view utf8;
        if (_element.get(utf8))
            return false;
        if (TextPool::takes(utf8))
            out = _pool->text(utf8);
        else
            out = textOfValidUtf8(utf8);
        return true;
    }
    bool read(qint64 &out) const {
        std::int64_t integer;
        if (_element.get(integer))
            return readWholeFloat(out);
        out = integer;
        return true;
    }

    // Records mostly arrive with their keys in the order of their fields, so the search starts behind the last find.
    // All keys before that place have been found already, so the first of equal keys is found wherever it is.
    class Members {
    public:
        Members(const simdjson::dom::object &object, TextPool &pool)
            : _next(object.begin()), _end(object.end()), _pool(&pool) {}
        Q_ALWAYS_INLINE LineNode find(QLatin1StringView latin1) {
            const std::string_view key(latin1.data(), static_cast<std::size_t>(latin1.size()));
            if (_next == _end)
                return {};
            if (_next.key_length() == key.size() && std::memcmp(_next.key_c_str(), key.data(), key.size()) == 0) {
                const LineNode found(_next.value(), *_pool);
                ++_next;
                return found;
            }
            return search(key);
        }

    private:
        LineNode search(std::string_view key) const;
        simdjson::dom::object::iterator _next;
        simdjson::dom::object::iterator _end;
        TextPool *_pool;
    };
    Members members() const { return {simdjson::dom::object(_element.get_object().value_unsafe()), *_pool}; }

    std::size_t count() const { return _element.get_array().value_unsafe().size(); }
    template<class Function>
    bool forEach(Function function) const {
        const simdjson::dom::array elements = _element.get_array().value_unsafe();
        for (const simdjson::dom::element element : elements) {
            if (!function(LineNode(element, *_pool)))
                return false;
        }
        return true;
    }
    JSONValue toValue() const;

private:
    bool readWholeFloat(qint64 &out) const;

    simdjson::dom::element _element;
    TextPool *_pool = nullptr; // null when absent
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
    QByteArray _copy;
};

} // namespace zelk
