#include "Support/Logger.h"

#include <QByteArray>
#include <QLoggingCategory>

namespace zelk {

struct Logger::Category {
    // The logging category keeps the pointer that it is given, so the name lives beside it.
    explicit Category(const char *category)
        : name(QByteArray("orrim.zelk.") + category), log(name.constData(), QtInfoMsg) {}

    QByteArray name;
    QLoggingCategory log;
};

Logger::Logger(const char *category) : _category(std::make_shared<Category>(category)) {}

void Logger::debug(const QString &message) const {
    qCDebug(_category->log).noquote() << message;
}
void Logger::info(const QString &message) const {
    qCInfo(_category->log).noquote() << message;
}
void Logger::error(const QString &message) const {
    qCCritical(_category->log).noquote() << message;
}
void Logger::fault(const QString &message) const {
    qCCritical(_category->log).noquote() << message;
}

} // namespace zelk
