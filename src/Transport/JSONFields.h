#pragma once

#include "Transport/Boxed.h"

#include <QLatin1StringView>
#include <QList>
#include <QString>
#include <QStringView>

#include <concepts>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

// How a type says what its JSON looks like. There are three ways, each found by argument-dependent lookup, so that any
// library can have records of its own:
//
// - A record names its fields once, right under its definition. The wire key is the field's name, and the one list
// serves
//   the reader and the writer. Fields of type std::optional (or Boxed) may be absent or null and are left out on
//   writing when they have no value; all others are required.
//
//       struct ListPlaylistsResult {
//           std::vector<PlaylistDTO> playlists;
//           std::optional<QString> cursor;
//       };
//       ZELK_JSON_FIELDS(ListPlaylistsResult, playlists, cursor)
//
// - An enumeration, whose cases are numbered from 0 without gaps and whose underlying type is fixed, names the wire
//   string of each case: constexpr QLatin1StringView wireName(Finish). Past the last case it returns the empty text.
//
// - Any other shape has a hand-written pair of functions:
//       template<class Node> bool readWire(const Node &node, ArtworkRef &out, JSONFailure &failure);
//       void writeWire(JSONWriter &writer, const ArtworkRef &ref);
namespace zelk {

template<class Record, class Member>
struct JSONField {
    QLatin1StringView key;
    Member Record::*member;
};
template<class Record, class Member>
JSONField(QLatin1StringView, Member Record::*) -> JSONField<Record, Member>;

template<class T>
concept JSONRecord = requires { jsonFields(static_cast<const T *>(nullptr)); };

template<class T>
concept WireEnum = std::is_enum_v<T> && requires(T value) {
    { wireName(value) } -> std::same_as<QLatin1StringView>;
};

template<class T>
inline constexpr bool isJSONOptional = false;
template<class T>
inline constexpr bool isJSONOptional<std::optional<T>> = true;
template<class T>
inline constexpr bool isJSONOptional<Boxed<T>> = true;

template<class T>
inline constexpr bool isJSONList = false;
template<class T>
inline constexpr bool isJSONList<std::vector<T>> = true;
template<class T>
inline constexpr bool isJSONList<QList<T>> = true;

template<WireEnum Enum>
inline constexpr std::size_t caseCount = [] {
    std::size_t count = 0;
    while (!wireName(static_cast<Enum>(count)).isEmpty())
        ++count;
    return count;
}();

// All cases of an enumeration, in the order of its declaration.
template<WireEnum Enum>
std::vector<Enum> allCases() {
    std::vector<Enum> cases;
    for (std::size_t i = 0; i < caseCount<Enum>; ++i)
        cases.push_back(static_cast<Enum>(i));
    return cases;
}

// The case of that wire string, compared exactly.
template<WireEnum Enum>
std::optional<Enum> fromWireName(QStringView text) {
    for (std::size_t i = 0; i < caseCount<Enum>; ++i) {
        if (text == wireName(static_cast<Enum>(i)))
            return static_cast<Enum>(i);
    }
    return std::nullopt;
}

namespace detail {

// What the compiler calls T, without namespaces and enclosing types.
template<class T>
constexpr std::string_view simpleTypeName() {
    std::string_view name = __PRETTY_FUNCTION__;
    name.remove_prefix(name.find("T = ") + 4);
    name = name.substr(0, name.find_first_of(";]"));
    if (const auto scope = name.rfind("::"); scope != std::string_view::npos)
        name.remove_prefix(scope + 2);
    return name;
}

} // namespace detail

// The name of a result type as messages show it: "PreviewTracksResult", and "Array<PlaylistDTO>" for a list.
template<class T>
QString jsonTypeName() {
    if constexpr (std::is_same_v<T, QString>) {
        return QStringLiteral("String");
    } else if constexpr (isJSONList<T>) {
        return QStringLiteral("Array<") + jsonTypeName<typename T::value_type>() + QStringLiteral(">");
    } else {
        constexpr std::string_view name = detail::simpleTypeName<T>();
        return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
    }
}

} // namespace zelk

#define ZELK_JSON_PARENS ()
#define ZELK_JSON_EXPAND(...) ZELK_JSON_EXPAND3(ZELK_JSON_EXPAND3(ZELK_JSON_EXPAND3(ZELK_JSON_EXPAND3(__VA_ARGS__))))
#define ZELK_JSON_EXPAND3(...) ZELK_JSON_EXPAND2(ZELK_JSON_EXPAND2(ZELK_JSON_EXPAND2(ZELK_JSON_EXPAND2(__VA_ARGS__))))
#define ZELK_JSON_EXPAND2(...) __VA_ARGS__
#define ZELK_JSON_EACH(Type, Member, ...)                                                                              \
    ::zelk::JSONField{QLatin1StringView(#Member),                                                                      \
                      &Type::Member} __VA_OPT__(, ZELK_JSON_EACH_AGAIN ZELK_JSON_PARENS(Type, __VA_ARGS__))
#define ZELK_JSON_EACH_AGAIN() ZELK_JSON_EACH
#define ZELK_JSON_FIELDS(Type, ...)                                                                                    \
    [[maybe_unused]] constexpr auto jsonFields(const Type *) {                                                         \
        return std::tuple{__VA_OPT__(ZELK_JSON_EXPAND(ZELK_JSON_EACH(Type, __VA_ARGS__)))};                            \
    }
