#pragma once

#include "Store/Database.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <utility>

// What the sources of the Database share.
namespace zelk::engine {

inline DatabaseError errorOf(const QSqlError &error) {
    return {error.text().toStdString(), error.nativeErrorCode().toInt() & 0xFF};
}

/// Null texts would be stored as NULL.
inline QString storedText(const QString &value) {
    return value.isNull() ? QStringLiteral("") : value;
}

template<class Function>
auto Database::transaction(Function function, Begins begins, Lasts lasts) {
    return _queue.run([&]() -> decltype(function()) {
        if (!_awaited.isEmpty()) {
            prepare(_awaited);
            _awaited.clear();
        }
        QSqlDatabase database = QSqlDatabase::database(_connection, false);
        if (std::exchange(_lasts, lasts) != lasts) {
            query(lasts == Lasts::ThroughPowerCuts ? QStringLiteral("PRAGMA synchronous = FULL")
                                                   : QStringLiteral("PRAGMA synchronous = NORMAL"));
        }
        query(begins == Begins::Writing ? QStringLiteral("BEGIN IMMEDIATE") : QStringLiteral("BEGIN"));
        const auto commit = [&database] {
            if (!database.commit()) {
                throw errorOf(database.lastError());
            }
        };
        try {
            if constexpr (std::is_void_v<decltype(function())>) {
                function();
                commit();
            } else {
                auto result = function();
                commit();
                return result;
            }
        } catch (...) {
            database.rollback();
            throw;
        }
    });
}

} // namespace zelk::engine
