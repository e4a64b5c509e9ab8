#include "Platform/UserDefaults.h"

#include <QSettings>

namespace zelk {

std::shared_ptr<UserDefaults> UserDefaults::standard() {
    return std::shared_ptr<UserDefaults>(new UserDefaults(std::make_unique<QSettings>(
        QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("orrim"), QStringLiteral("zelk"))));
}

UserDefaults::UserDefaults(const QString &file)
    : UserDefaults(std::make_unique<QSettings>(file, QSettings::IniFormat)) {}

UserDefaults::UserDefaults(std::unique_ptr<QSettings> settings) : _settings(std::move(settings)) {
    // Not what an administrator set for all: these are this user's own.
    _settings->setFallbacksEnabled(false);
}

UserDefaults::~UserDefaults() = default;

QVariant UserDefaults::value(const QString &key) const {
    return _settings->value(key);
}

void UserDefaults::set(const QString &key, const QVariant &value) {
    _settings->setValue(key, value);
}

void UserDefaults::remove(const QString &key) {
    _settings->remove(key);
}

} // namespace zelk
