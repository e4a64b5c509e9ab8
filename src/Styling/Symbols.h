#pragma once

#include <QColor>
#include <QQuickImageProvider>
#include <QString>
#include <QStringList>
#include <QUrl>

// The symbols of the views, drawn from embedded SVGs in any colour. The table of names is src/Styling/symbols.txt.
namespace zelk::Symbols {

bool contains(const QString &name);
QStringList names();

// The address under which an Image finds a symbol in a colour, alpha included.
QUrl source(const QString &name, const QColor &color);

// A symbol in a colour, `edge` device pixels square; a null image for a name that isn't in the table.
QImage draw(const QString &name, const QColor &color, int edge);

// Serves "image://symbol/<name>/<aarrggbb>". Tinting is done here and not by an effect: no shader runs on every
// renderer.
class Provider : public QQuickImageProvider {
public:
    Provider();
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace zelk::Symbols
