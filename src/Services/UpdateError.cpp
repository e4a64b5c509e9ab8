#include "Services/UpdateError.h"

namespace zelk {

namespace {

QByteArray nameOf(UpdateProblem problem) {
    switch (problem) {
    case UpdateProblem::noFeed:
        return "no feed";
    case UpdateProblem::insecureAddress:
        return "insecure address";
    case UpdateProblem::unreachable:
        return "unreachable";
    case UpdateProblem::untrustedServer:
        return "untrusted server";
    case UpdateProblem::refused:
        return "refused by the server";
    case UpdateProblem::silence:
        return "silence";
    case UpdateProblem::unreadableFeed:
        return "unreadable feed";
    case UpdateProblem::tooLarge:
        return "too large";
    case UpdateProblem::unsignedUpdate:
        return "unsigned";
    case UpdateProblem::wrongLength:
        return "wrong length";
    case UpdateProblem::wrongSignature:
        return "wrong signature";
    case UpdateProblem::unwritable:
        return "unwritable";
    }
    Q_UNREACHABLE();
}

} // namespace

UpdateError::UpdateError(UpdateProblem problem, const QString &detail) : _problem(problem), _what(nameOf(problem)) {
    if (!detail.isEmpty())
        _what += ": " + detail.toUtf8();
}

} // namespace zelk
