#include "Playlists/Location.h"

#include <QDir>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

int hexDigit(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

/// The path of a "file:" address. Read by hand, since many write "#" and "?" into it as they are in the file's name.
QString pathOfFileUrl(const QString &url) {
    QString rest = url.mid(5);
    if (rest.startsWith("//"_L1)) {
        const auto slash = rest.indexOf(u'/', 2);
        const QString host = rest.mid(2, slash < 0 ? -1 : slash - 2);
        if (slash < 0 || (!host.isEmpty() && host.compare("localhost"_L1, Qt::CaseInsensitive) != 0)) {
            return {};
        }
        rest = rest.mid(slash);
    }
    return rest.startsWith(u'/') ? QDir::cleanPath(percentDecoded(rest)) : QString();
}

} // namespace

QString percentDecoded(const QString &text) {
    if (!text.contains(u'%')) {
        return text;
    }
    const QByteArray bytes = text.toUtf8();
    QByteArray decoded;
    decoded.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const int high = bytes[i] == '%' && i + 2 < bytes.size() ? hexDigit(bytes[i + 1]) : -1;
        const int low = high >= 0 ? hexDigit(bytes[i + 2]) : -1;
        if (low >= 0) {
            decoded += static_cast<char>(high * 16 + low);
            i += 2;
        } else {
            decoded += bytes[i];
        }
    }
    return QString::fromUtf8(decoded);
}

QString resolvedLocation(const QString &entry, const QString &folder) {
    static const QRegularExpression drive(u"^[A-Za-z]:[\\\\/]"_s);
    static const QRegularExpression scheme(u"^[A-Za-z][A-Za-z0-9+.-]+://"_s);
    if (entry.startsWith("file:"_L1, Qt::CaseInsensitive)) {
        const QString path = pathOfFileUrl(entry);
        return path.contains(QChar(0)) ? QString() : path;
    }
    if (entry.isEmpty() || entry.contains(QChar(0)) || entry.startsWith("\\\\"_L1) || scheme.match(entry).hasMatch() ||
        drive.match(entry).hasMatch()) {
        return {};
    }
    const QString path = QString(entry).replace(u'\\', u'/');
    return QDir::cleanPath(path.startsWith(u'/') ? path : folder + u'/' + path);
}

} // namespace zelk::engine
