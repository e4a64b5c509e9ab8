#include "Output/FileNames.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

/// Room for " (9999)" and ".flac".
constexpr qsizetype reserved = 16;

/// What neither this nor another common file system takes in a name, in the nearest harmless form.
QString safe(const QString &text) {
    QString name;
    const QString composed = text.normalized(QString::NormalizationForm_C);
    for (qsizetype i = 0; i < composed.size(); ++i) {
        const QChar c = composed[i];
        if (c.isSurrogate()) {
            if (c.isHighSurrogate() && i + 1 < composed.size() && composed[i + 1].isLowSurrogate()) {
                name += QStringView(composed).sliced(i++, 2);
            }
            continue; // half a character is no name that the file system could give back
        }
        switch (c.unicode()) {
        case u'/':
        case u'\\':
        case u':':
        case u'|':
            name += u'-';
            break;
        case u'"':
            name += u'\'';
            break;
        case u'<':
            name += u'(';
            break;
        case u'>':
            name += u')';
            break;
        case u'*':
        case u'?':
            break;
        default:
            if (c.isPrint() || c.category() == QChar::Other_Format) {
                name += c;
            } else if (c.isSpace()) {
                name += u' ';
            }
        }
    }
    return name.simplified();
}

QString trimmedEnds(QString name) {
    const auto droppable = [](QChar c) { return c == u'.' || c.isSpace(); };
    while (!name.isEmpty() && droppable(name.back())) {
        name.chop(1);
    }
    while (!name.isEmpty() && droppable(name.front())) {
        name.remove(0, 1);
    }
    return name;
}

/// Cuts between characters as people see them, so that no accent or emoji is torn.
QString shortened(const QString &name, qsizetype bytes) {
    if (name.toUtf8().size() <= bytes) {
        return name;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    qsizetype end = 0;
    for (qsizetype at = finder.toNextBoundary(); at >= 0 && name.left(at).toUtf8().size() <= bytes;
         at = finder.toNextBoundary()) {
        end = at;
    }
    return name.left(end);
}

/// Names that some systems keep for their devices, whatever extension is behind them.
bool isDevice(const QString &stem) {
    static const QRegularExpression form(u"^(?:con|prn|aux|nul|com[0-9¹²³]|lpt[0-9¹²³])\\s*(?:\\.|$)"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    return form.match(stem).hasMatch();
}

} // namespace

QString stemFor(const QString &artist, const QString &title) {
    const QString safeArtist = safe(artist);
    const QString safeTitle = safe(title);
    QString stem = safeArtist.isEmpty()  ? safeTitle
                   : safeTitle.isEmpty() ? safeArtist
                                         : safeArtist + " - "_L1 + safeTitle;
    // A very long artist must not push the title out.
    if (stem.toUtf8().size() > longestFileName - reserved && !safeArtist.isEmpty() && !safeTitle.isEmpty()) {
        stem = shortened(safeArtist, (longestFileName - reserved) / 2).trimmed() + " - "_L1 + safeTitle;
    }
    stem = trimmedEnds(shortened(trimmedEnds(stem), longestFileName - reserved));
    if (isDevice(stem)) {
        stem.prepend(u'_');
    }
    return stem.isEmpty() ? u"Untitled"_s : stem;
}

void NameRegistry::take(const QString &stem) {
    const std::lock_guard lock(_mutex);
    _taken.insert(keyOf(stem));
}

bool NameRegistry::isTaken(const QString &stem) const {
    const std::lock_guard lock(_mutex);
    return _taken.contains(keyOf(stem));
}

QString NameRegistry::claim(const QString &stem) {
    const std::lock_guard lock(_mutex);
    QString name = stem;
    for (int i = 2; _taken.contains(keyOf(name)); ++i) {
        name = u"%1 (%2)"_s.arg(stem).arg(i);
    }
    _taken.insert(keyOf(name));
    return name;
}

QString NameRegistry::keyOf(const QString &stem) {
    return stem.normalized(QString::NormalizationForm_C).toCaseFolded().normalized(QString::NormalizationForm_C);
}

} // namespace zelk::engine
