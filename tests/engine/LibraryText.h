#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace zelk::engine::testing {

/// Pieces of the Music app's exported library.
inline QByteArray text(const QByteArray &key, const QByteArray &value) {
    return "<key>" + key + "</key><string>" + value + "</string>\n";
}

inline QByteArray number(const QByteArray &key, qint64 value) {
    return "<key>" + key + "</key><integer>" + QByteArray::number(value) + "</integer>\n";
}

inline QByteArray yes(const QByteArray &key) {
    return "<key>" + key + "</key><true/>\n";
}

inline QByteArray no(const QByteArray &key) {
    return "<key>" + key + "</key><false/>\n";
}

/// A track "T<id>" of the artist "A<id>" with the persistent ID "P<id>".
inline QByteArray track(int id, const QByteArray &more = {}) {
    const QByteArray name = QByteArray::number(id);
    return "<key>" + name + "</key><dict>" + number("Track ID", id) + text("Name", 'T' + name) +
           text("Artist", 'A' + name) + number("Total Time", id * 1'000) + text("Persistent ID", 'P' + name) + more +
           "</dict>\n";
}

inline QByteArray rows(const QList<int> &ids) {
    QByteArray items = "<key>Playlist Items</key><array>";
    for (const int id : ids) {
        items += "<dict>" + number("Track ID", id) + "</dict>";
    }
    return items + "</array>\n";
}

inline QByteArray list(const QByteArray &name, const QByteArray &id, const QByteArray &more) {
    return "<dict>" + text("Name", name) + text("Playlist Persistent ID", id) + more + "</dict>\n";
}

inline QByteArray plist(const QByteArray &content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST "
           "1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n" +
           content + "</plist>\n";
}

inline QByteArray library(const QByteArray &tracks, const QByteArray &lists) {
    return plist("<dict>" + number("Major Version", 1) + "<key>Tracks</key><dict>" + tracks +
                 "</dict><key>Playlists</key><array>" + lists + "</array>" + text("Music Folder", "file:///m/") +
                 "</dict>");
}

} // namespace zelk::engine::testing
