#pragma once

#include <exception>

namespace zelk {

/// The failure with which a cancelled wait ends: thrown by the sleep, the stream's `next` and a request whose task was
/// cancelled. It is never shown to the user, who asked for the end himself.
class Cancelled : public std::exception {
public:
    const char *what() const noexcept override { return "The task was cancelled."; }
};

} // namespace zelk
