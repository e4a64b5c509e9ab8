#pragma once

#include "TextFit.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <tuple>

namespace zelk {

// The layout runs from right to left for as long as this is there.
class Mirrored {
public:
    Mirrored() { QGuiApplication::setLayoutDirection(Qt::RightToLeft); }
    ~Mirrored() { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }
    Q_DISABLE_COPY_MOVE(Mirrored)
};

// What is read in view in a window, and the controls and covers, each with its place.
class Mirror {
public:
    struct Seen {
        QString what;
        QRectF place;
    };

    static QList<Seen> lookAt(const QQuickWindow *window) {
        QList<Seen> seen;
        look(window->contentItem(), seen);
        std::sort(seen.begin(), seen.end(), [](const Seen &a, const Seen &b) {
            return std::tuple(a.what, a.place.y(), a.place.width()) < std::tuple(b.what, b.place.y(), b.place.width());
        });
        return seen;
    }

    // Everything at the same height, and as far from the right as it was from the left. Things that read alike in one
    // line are told apart by nothing, so any of them may stand at the place.
    static QStringList faults(const QList<Seen> &before, const QList<Seen> &after, double width) {
        QStringList found;
        for (const Seen &each : before) {
            const QRectF &was = each.place;
            const bool isThere = std::any_of(after.cbegin(), after.cend(), [&](const Seen &now) {
                return now.what == each.what && qAbs(now.place.y() - was.y()) < 1 &&
                       qAbs(now.place.x() - (width - was.right())) < 1.5;
            });
            if (!isThere)
                found +=
                    QStringLiteral("“%1” from %2, %3 to %4").arg(each.what).arg(was.x()).arg(was.y()).arg(was.right());
        }
        return found;
    }

private:
    static void look(QQuickItem *item, QList<Seen> &seen) {
        if (!item->isVisible() || item->opacity() <= 0)
            return;
        const QString text = item->property("text").toString();
        if (item->inherits("QQuickText") && !text.isEmpty())
            seen.append({text, item->mapRectToScene(TextFit::drawn(item))});
        else if (!item->objectName().isEmpty() && item->width() > 0)
            seen.append({item->objectName(), item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))});
        else if (item->inherits("QQuickImage"))
            seen.append({QStringLiteral("symbol"), item->mapRectToScene(QRectF(0, 0, item->width(), item->height()))});
        const auto children = item->childItems();
        for (QQuickItem *child : children)
            look(child, seen);
    }
};

} // namespace zelk
