#pragma once

#include <QSet>
#include <QString>

#include <mutex>

namespace zelk::engine {

/// The longest name, in bytes of UTF-8, that the common file systems take.
inline constexpr qsizetype longestFileName = 255;

/// "Artist - Title" as a file name without extension: composed Unicode, no character that a common file system refuses,
/// no dot or space at either end, and short enough for a number and an extension behind it.
QString stemFor(const QString &artist, const QString &title);

/// A path's folder, and its file's name without extension.
inline QString folderOf(const QString &path) {
    return path.section(u'/', 0, -2);
}
inline QString stemOf(const QString &path) {
    const QString name = path.section(u'/', -1);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.left(dot) : name;
}

/// Gives each file a name of its own, without regard to case and extension, since the folder may move to a file system
/// that has none. The names are given in the order of asking. Any thread may call.
class NameRegistry {
public:
    /// Keeps a name from being given.
    void take(const QString &stem);
    bool isTaken(const QString &stem) const;

    /// The stem, or the stem with " (2)", " (3)", … behind it; taken from now on.
    QString claim(const QString &stem);

    /// What two stems have in common that may not stand side by side.
    static QString keyOf(const QString &stem);

private:
    mutable std::mutex _mutex;
    QSet<QString> _taken;
};

} // namespace zelk::engine
