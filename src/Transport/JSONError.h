#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>
#include <QVarLengthArray>

#include <exception>
#include <string_view>

namespace zelk {

// The failure of a JSON reader or writer.
class JSONError : public std::exception {
public:
    JSONError(QString path, QString reason);

    // Where it failed, from the root of what was read: "data.tracks[3].artwork.kind". Empty at the root itself.
    const QString &path() const { return _path; }
    const QString &reason() const { return _reason; }
    // "<path>: <reason>", or the reason alone at the root.
    QString description() const;
    const char *what() const noexcept override { return _what.constData(); }

    friend bool operator==(const JSONError &a, const JSONError &b) {
        return a._path == b._path && a._reason == b._reason;
    }

private:
    QString _path;
    QString _reason;
    QByteArray _what;
};

// What a reader notes on its way out of a value that doesn't fit. Readers return a bool and leave the details here,
// since a stream of junk must stay cheap; it becomes a JSONError where the reading began. The path is gathered from the
// inside out: the place of the failure first, then each enclosing key or index.
class JSONFailure {
public:
    // Each returns false, for `return failure.missing(…)`.
    bool because(QLatin1StringView reason, QString detail = {});
    bool expected(QLatin1StringView expected, QLatin1StringView found);
    bool missing(QLatin1StringView key);
    bool under(QLatin1StringView key);
    bool at(qsizetype index);

    void clear();
    QString path() const;
    QString reason() const;
    QString description() const { return error().description(); }
    JSONError error() const { return {path(), reason()}; }

private:
    struct Step {
        QLatin1StringView key; // null for an index
        qsizetype index;
    };
    QVarLengthArray<Step, 8> _steps;
    QLatin1StringView _reason;
    QLatin1StringView _found;
    QString _detail;
};

} // namespace zelk
