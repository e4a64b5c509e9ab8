#pragma once

#include <QString>

#include <exception>

namespace zelk::engine {

/// A file or folder that couldn't be read or changed.
class FileProblem : public std::exception {
public:
    /// `code` is the errno of the failed call.
    FileProblem(QString path, int code);

    const QString &path() const { return _path; }
    int code() const { return _code; }
    /// No space is left, or the user's share of it is used up.
    bool isFull() const;
    /// What the system says of it, without the path: "Permission denied".
    QString reason() const;
    /// For the user: the reason with the path.
    QString description() const;
    const char *what() const noexcept override { return _what.constData(); }

private:
    QString _path;
    int _code;
    QByteArray _what;
};

} // namespace zelk::engine
