#include "Output/Strays.h"

#include "Output/FileNames.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

constexpr qint64 compared = 1 << 16; // bytes at a time

bool haveSameBytes(const QString &one, const QString &other) {
    QFile a(one);
    QFile b(other);
    const QFileInfo info(other);
    if (!info.isFile() || info.isSymLink() || a.size() != b.size() || !a.open(QIODevice::ReadOnly) ||
        !b.open(QIODevice::ReadOnly)) {
        return false;
    }
    for (qint64 left = a.size(); left > 0;) {
        const QByteArray bytes = a.read(std::min(left, compared));
        if (bytes.isEmpty() || bytes != b.read(bytes.size())) {
            return false;
        }
        left -= bytes.size();
    }
    return true;
}

} // namespace

Strays::Strays(const QStringList &paths) {
    for (const QString &path : paths) {
        _byName.insert(nameOf(stemOf(path)), path);
    }
}

QString Strays::nameOf(const QString &stem) {
    static const QRegularExpression number(u" \\(\\d+\\)$"_s);
    return NameRegistry::keyOf(QString(stem).remove(number));
}

QString twinOf(const QString &path, const QStringList &others) {
    const QString extension = path.section(u'.', -1);
    for (const QString &other : others) {
        if (other.section(u'.', -1) == extension && haveSameBytes(path, other)) {
            return other;
        }
    }
    return {};
}

} // namespace zelk::engine
