#pragma once

#include "Transport/ServerEvent.h"

namespace zelk {

// What the client's event stream carries: the engine's events, and its comings and goings.
struct HelperEvent {
    struct Server {
        ServerEvent event;
        bool operator==(const Server &) const = default;
    };
    struct HelperCrashed {
        bool operator==(const HelperCrashed &) const = default;
    };
    struct HelperReady {
        bool operator==(const HelperReady &) const = default;
    };

    static HelperEvent server(ServerEvent event) { return {Server{std::move(event)}}; }
    static HelperEvent helperCrashed() { return {HelperCrashed{}}; }
    static HelperEvent helperReady() { return {HelperReady{}}; }

    std::variant<Server, HelperCrashed, HelperReady> value; // for match() and caseOf(), see Tagged.h
    bool operator==(const HelperEvent &) const = default;
};

} // namespace zelk
