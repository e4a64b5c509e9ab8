#pragma once

#include <QByteArrayView>
#include <QList>
#include <QMap>
#include <QString>

#include <variant>

namespace zelk {

// Any JSON document: what the protocol leaves open. A value that is cheap to copy and safe to pass between threads.
class JSONValue {
public:
    using Array = QList<JSONValue>;
    using Object = QMap<QString, JSONValue>;
    struct Null {
        friend bool operator==(Null, Null) { return true; }
    };

    JSONValue() noexcept; // null
    JSONValue(const JSONValue &);
    JSONValue(JSONValue &&) noexcept;
    JSONValue &operator=(const JSONValue &);
    JSONValue &operator=(JSONValue &&) noexcept;
    ~JSONValue();

    static const JSONValue null;
    static JSONValue string(QString text);
    static JSONValue number(double number); // integers too: those above 2^53 are not carried exactly
    static JSONValue bool_(bool value);
    static JSONValue array(Array elements);
    static JSONValue object(Object members);

    // Reads a whole JSON document; throws JSONError when it isn't one.
    static JSONValue parse(QByteArrayView json);
    // Compact JSON; throws JSONError for a number that is not finite.
    QByteArray json() const;

    // The payload if the value is of that case, null otherwise.
    const QString *asString() const { return std::get_if<QString>(&value); }
    const double *asNumber() const { return std::get_if<double>(&value); }
    const bool *asBool() const { return std::get_if<bool>(&value); }
    const Array *asArray() const { return std::get_if<Array>(&value); }
    const Object *asObject() const { return std::get_if<Object>(&value); }
    bool isNull() const { return std::holds_alternative<Null>(value); }

    friend bool operator==(const JSONValue &a, const JSONValue &b) { return equal(a, b); }

    std::variant<QString, double, bool, Array, Object, Null> value; // for match(), see Tagged.h

private:
    static bool equal(const JSONValue &a, const JSONValue &b);
};

} // namespace zelk
