#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <cmath>
#include <functional>

namespace zelk {

// Finds texts that their places cut.
class TextFit {
public:
    // Where a text may be elided: names that are the user's own may be longer than any room.
    using MayElide = std::function<bool(QQuickItem *text)>;

    // What is wrong with the texts in view under `root`, one line each; empty when every one shows whole.
    static QStringList faults(QQuickItem *root, const MayElide &mayElide) {
        QStringList found;
        look(root, mayElide, found);
        return found;
    }
    // Whether the item is one of those, or in one of them.
    static bool isIn(QQuickItem *item, const QStringList &objectNames) {
        for (; item; item = item->parentItem()) {
            if (objectNames.contains(item->objectName()))
                return true;
        }
        return false;
    }

    // Where its glyphs are, in the item's coordinates.
    static QRectF drawn(const QQuickItem *text) {
        const auto horizontal = text->property("effectiveHorizontalAlignment").toInt();
        const auto vertical = text->property("verticalAlignment").toInt();
        QRectF place(0, 0, text->property("contentWidth").toDouble(), text->property("contentHeight").toDouble());
        if (horizontal == Qt::AlignRight)
            place.moveRight(text->width());
        else if (horizontal == Qt::AlignHCenter)
            place.moveLeft((text->width() - place.width()) / 2);
        if (vertical == Qt::AlignBottom)
            place.moveBottom(text->height());
        else if (vertical == Qt::AlignVCenter)
            place.moveTop((text->height() - place.height()) / 2);
        return place;
    }

private:
    static constexpr double slack = 1;     // a rounding to whole pixels
    static constexpr double sideSlack = 8; // nothing stands in the gap beside a text

    static void look(QQuickItem *item, const MayElide &mayElide, QStringList &found) {
        if (!item->isVisible() || item->opacity() <= 0)
            return;
        if (isText(item) && !item->property("text").toString().isEmpty())
            check(item, mayElide, found);
        const auto children = item->childItems();
        for (QQuickItem *child : children)
            look(child, mayElide, found);
    }
    static bool isText(QQuickItem *item) { return item->inherits("QQuickText") || item->inherits("QQuickTextInput"); }

    static void check(QQuickItem *text, const MayElide &mayElide, QStringList &found) {
        const QSizeF content(text->property("contentWidth").toDouble(), text->property("contentHeight").toDouble());
        const auto fault = [&](const char *what, const QQuickItem *where) {
            found += QStringLiteral("“%1” (%2 x %3) %4 %5 %6 (%7 x %8)")
                         .arg(text->property("text").toString())
                         .arg(content.width())
                         .arg(content.height())
                         .arg(QLatin1StringView(what), QLatin1StringView(where->metaObject()->className()),
                              where->objectName())
                         .arg(where->width())
                         .arg(where->height());
        };
        if (text->property("truncated").toBool() && !mayElide(text))
            return fault("is elided in", text);
        if (text->inherits("QQuickTextInput"))
            return content.height() > text->height() + slack ? fault("is cut by", text) : void();
        if (content.height() > text->height() + slack || content.width() > text->width() + slack)
            return fault("is larger than", text);
        // What scrolls may stand outside of the view; all else lies within what it belongs to.
        for (QQuickItem *around = text->parentItem(); around && !around->inherits("QQuickFlickable");
             around = around->parentItem()) {
            if (around->width() <= 0 && around->height() <= 0)
                continue;
            const QRectF place = text->mapRectToItem(around, drawn(text));
            if (place.top() < -slack || place.bottom() > around->height() + slack)
                return fault("is higher than", around);
            if (place.left() < -sideSlack || place.right() > around->width() + sideSlack)
                return fault("is wider than", around);
        }
    }
};

} // namespace zelk
