#include "Playlists/ArtistNames.h"

#include <QStringList>

namespace zelk::engine {

QString shownArtists(const QString &cell) {
    QStringList names;
    QString name;
    const auto finish = [&] {
        if (const QString trimmed = name.simplified(); !trimmed.isEmpty()) {
            names += trimmed;
        }
        name.clear();
    };
    for (qsizetype i = 0; i < cell.size(); ++i) {
        const QChar c = cell[i];
        if (c == u'\\' && i + 1 < cell.size() && (cell[i + 1] == u',' || cell[i + 1] == u';')) {
            name += cell[++i];
        } else if (c == u';' || (c == u',' && i + 1 < cell.size() && cell[i + 1].isSpace())) {
            finish();
        } else {
            name += c;
        }
    }
    finish();
    return names.join(QStringLiteral(", "));
}

} // namespace zelk::engine
