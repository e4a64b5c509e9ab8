#include "Transport/JSONError.h"

namespace zelk {

JSONError::JSONError(QString path, QString reason)
    : _path(std::move(path)), _reason(std::move(reason)), _what(description().toUtf8()) {}

QString JSONError::description() const {
    return _path.isEmpty() ? _reason : _path + QLatin1StringView(": ") + _reason;
}

bool JSONFailure::because(QLatin1StringView reason, QString detail) {
    clear();
    _reason = reason;
    _detail = std::move(detail);
    return false;
}

bool JSONFailure::expected(QLatin1StringView expected, QLatin1StringView found) {
    clear();
    _reason = expected;
    _found = found;
    return false;
}

bool JSONFailure::missing(QLatin1StringView key) {
    because(QLatin1StringView("missing"));
    return under(key);
}

bool JSONFailure::under(QLatin1StringView key) {
    _steps.append({key, 0});
    return false;
}

bool JSONFailure::at(qsizetype index) {
    _steps.append({{}, index});
    return false;
}

void JSONFailure::clear() {
    _steps.clear();
    _reason = {};
    _found = {};
    _detail.clear();
}

QString JSONFailure::path() const {
    QString path;
    for (auto step = _steps.crbegin(); step != _steps.crend(); ++step) {
        if (step->key.isNull()) {
            path += QLatin1Char('[') + QString::number(step->index) + QLatin1Char(']');
        } else {
            if (!path.isEmpty())
                path += QLatin1Char('.');
            path += step->key;
        }
    }
    return path;
}

QString JSONFailure::reason() const {
    if (_found.isNull())
        return _reason + _detail;
    return QLatin1StringView("expected ") + _reason + QLatin1StringView(", found ") + _found;
}

} // namespace zelk
