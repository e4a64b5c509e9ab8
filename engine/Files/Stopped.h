#pragma once

#include <exception>

namespace zelk::engine {

/// The work was asked to stop.
class Stopped : public std::exception {
public:
    const char *what() const noexcept override { return "stopped"; }
};

} // namespace zelk::engine
