#pragma once

#include <QList>
#include <QLoggingCategory>
#include <QMutex>
#include <QSet>
#include <QString>

#include <utility>

namespace zelk {

/// What is logged while it lives, from any thread, all levels included.
class LogCapture {
public:
    struct Entry {
        QtMsgType type;
        QString category;
        QString message;
    };

    LogCapture() {
        current = this;
        QLoggingCategory::setFilterRules(QStringLiteral("orrim.zelk.*=true"));
        _previous =
            qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &message) {
                const QMutexLocker lock(&current->_mutex);
                current->_entries.append({type, QString::fromLatin1(context.category), message});
            });
    }
    ~LogCapture() {
        qInstallMessageHandler(_previous);
        QLoggingCategory::setFilterRules({});
    }
    Q_DISABLE_COPY_MOVE(LogCapture)

    QList<Entry> entries() const {
        const QMutexLocker lock(&_mutex);
        return _entries;
    }

    /// The messages of one category, such as "client", that begin with `prefix`.
    QStringList messages(const QString &category, const QString &prefix = {}) const {
        QStringList found;
        const auto all = entries();
        for (const auto &entry : all) {
            if (entry.category == QStringLiteral("orrim.zelk.") + category && entry.message.startsWith(prefix))
                found.append(entry.message);
        }
        return found;
    }
    /// The levels of all messages that begin with `prefix`.
    QSet<QtMsgType> levels(const QString &prefix) const {
        QSet<QtMsgType> found;
        const auto all = entries();
        for (const auto &entry : all) {
            if (entry.message.startsWith(prefix))
                found.insert(entry.type);
        }
        return found;
    }

private:
    static inline LogCapture *current = nullptr;
    mutable QMutex _mutex;
    QList<Entry> _entries;
    QtMessageHandler _previous = nullptr;
};

} // namespace zelk
