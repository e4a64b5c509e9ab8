#pragma once

#include "engine/EngineHome.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace zelk::engine::testing {

/// Changes a home's database behind the engine's back, and returns the last statement's first value.
inline QVariant change(const EngineHome &home, const QStringList &statements) {
    const QString connection = QStringLiteral("behind");
    QVariant value;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(home.path(QStringLiteral(".local/share/zelk/engine.db")));
        if (!database.open()) {
            qFatal("a test's database can't be opened");
        }
        for (const QString &statement : statements) {
            QSqlQuery query(database);
            if (!query.exec(statement)) {
                qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
            }
            value = query.next() ? query.value(0) : QVariant();
        }
    }
    QSqlDatabase::removeDatabase(connection);
    return value;
}

} // namespace zelk::engine::testing
