#pragma once

#include <utility>
#include <variant>

namespace zelk {

template<class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template<class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

// A tagged value is a struct whose one member `value` is a std::variant of named structs. `match` takes it apart: one
// function for each case, and a case without a function doesn't compile.
//
//     match(event, [](const HelperEvent::Server &server) { … },
//                  [](const HelperEvent::HelperCrashed &) { … },
//                  [](const HelperEvent::HelperReady &) { … });
template<class Tagged, class... Functions>
decltype(auto) match(Tagged &&tagged, Functions &&...functions) {
    return std::visit(Overloaded{std::forward<Functions>(functions)...}, std::forward<Tagged>(tagged).value);
}

// The payload if the value is of that case, null otherwise: caseOf<ArtworkRef::Mosaic>(track.artwork).
template<class Case, class Tagged>
const Case *caseOf(const Tagged &tagged) {
    return std::get_if<Case>(&tagged.value);
}

template<class Variant, class Case>
inline constexpr bool isCaseOf = false;
template<class... Cases, class Case>
inline constexpr bool isCaseOf<std::variant<Cases...>, Case> = (std::is_same_v<Cases, Case> || ...);

} // namespace zelk
