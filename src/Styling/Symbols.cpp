#include "Styling/Symbols.h"

#include <QFile>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::Symbols {

namespace {

struct Entry {
    const char *name;
    const char *file;
};

// Written by the build from symbols.txt: {"name", ":/zelk/symbols/file.svg"}, …
constexpr Entry table[] = {
#include "SymbolTable.inc"
};

const QHash<QString, QString> &files() {
    static const QHash<QString, QString> all = [] {
        QHash<QString, QString> result;
        for (const Entry &entry : table)
            result.insert(QString::fromLatin1(entry.name), QString::fromLatin1(entry.file));
        return result;
    }();
    return all;
}

} // namespace

bool contains(const QString &name) {
    return files().contains(name);
}

QStringList names() {
    QStringList all = files().keys();
    std::sort(all.begin(), all.end());
    return all;
}

QUrl source(const QString &name, const QColor &color) {
    if (name.isEmpty())
        return {};
    return QUrl(u"image://symbol/"_s + name + u'/' + color.name(QColor::HexArgb).mid(1));
}

QImage draw(const QString &name, const QColor &color, int edge) {
    const QString file = files().value(name);
    if (file.isEmpty() || edge < 1)
        return {};
    QSvgRenderer svg(file);
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    svg.render(&painter, QRectF(0, 0, edge, edge));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

Provider::Provider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage Provider::requestImage(const QString &id, QSize *size, const QSize &requestedSize) {
    const qsizetype slash = id.lastIndexOf(u'/');
    const QString name = id.left(slash);
    const QColor color = QColor::fromString(QString(u'#' + id.mid(slash + 1)));
    static constexpr int naturalEdge = 16;
    const int edge = std::max(requestedSize.width(), requestedSize.height());
    const QImage image = draw(name, color, edge > 0 ? edge : naturalEdge);
    if (image.isNull())
        qWarning("zelk: no symbol is named \"%s\"", qPrintable(name));
    if (size)
        *size = image.size();
    return image;
}

} // namespace zelk::Symbols
