#include "Files/FileProblem.h"

#include <cerrno>
#include <system_error>

namespace zelk::engine {

FileProblem::FileProblem(QString path, int code) : _path(std::move(path)), _code(code), _what(description().toUtf8()) {}

bool FileProblem::isFull() const {
    return _code == ENOSPC || _code == EDQUOT || _code == EFBIG;
}

QString FileProblem::reason() const {
    return QString::fromStdString(std::generic_category().message(_code));
}

QString FileProblem::description() const {
    return QStringLiteral("%1: %2").arg(_path, reason());
}

} // namespace zelk::engine
