#pragma once

#include "Transport/HelperError.h"

#include <QString>

#include <exception>

namespace zelk::engine {

/// A request that can't be fulfilled, in the terms of its reply.
class MethodError : public std::exception {
public:
    MethodError(EngineErrorCode code, QString message) : _code(code), _message(std::move(message)) {}

    EngineErrorCode code() const { return _code; }
    const QString &message() const { return _message; }
    const char *what() const noexcept override { return "a request was refused"; }

private:
    EngineErrorCode _code;
    QString _message;
};

} // namespace zelk::engine
