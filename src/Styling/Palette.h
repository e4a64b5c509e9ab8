#pragma once

#include "Styling/Tokens.h"

#include <QColor>
#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

namespace zelk {

// Every colour of the window in light and in dark, by what it is for. Text and symbol colours reach 4.5 to 1 on window,
// sidebar, card, hover and selection; fill colours are for meters and never for text.
class Palette : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(QColor window MEMBER window NOTIFY changed)
    Q_PROPERTY(QColor sidebar MEMBER sidebar NOTIFY changed)
    Q_PROPERTY(QColor card MEMBER card NOTIFY changed)
    Q_PROPERTY(QColor button MEMBER button NOTIFY changed)
    Q_PROPERTY(QColor buttonStroke MEMBER buttonStroke NOTIFY changed)
    Q_PROPERTY(QColor field MEMBER field NOTIFY changed)
    Q_PROPERTY(QColor fieldStroke MEMBER fieldStroke NOTIFY changed)
    Q_PROPERTY(QColor searchField MEMBER searchField NOTIFY changed)
    Q_PROPERTY(QColor hover MEMBER hover NOTIFY changed)
    Q_PROPERTY(QColor pressed MEMBER pressed NOTIFY changed)
    Q_PROPERTY(QColor fillHover MEMBER fillHover NOTIFY changed)
    Q_PROPERTY(QColor fillPressed MEMBER fillPressed NOTIFY changed)
    Q_PROPERTY(QColor selection MEMBER selection NOTIFY changed)
    Q_PROPERTY(QColor separator MEMBER separator NOTIFY changed)
    Q_PROPERTY(QColor divider MEMBER divider NOTIFY changed)
    Q_PROPERTY(QColor coverStroke MEMBER coverStroke NOTIFY changed)
    Q_PROPERTY(QColor barTrack MEMBER barTrack NOTIFY changed)
    Q_PROPERTY(QColor switchOff MEMBER switchOff NOTIFY changed)
    Q_PROPERTY(QColor primary MEMBER primary NOTIFY changed)
    Q_PROPERTY(QColor secondary MEMBER secondary NOTIFY changed)
    Q_PROPERTY(QColor tertiary MEMBER tertiary NOTIFY changed)
    Q_PROPERTY(QColor quaternary MEMBER quaternary NOTIFY changed)
    Q_PROPERTY(QColor accentFill MEMBER accentFill NOTIFY changed)
    Q_PROPERTY(QColor onAccent MEMBER onAccent NOTIFY changed)
    Q_PROPERTY(QColor accent MEMBER accent NOTIFY changed)
    Q_PROPERTY(QColor red MEMBER red NOTIFY changed)
    Q_PROPERTY(QColor orange MEMBER orange NOTIFY changed)
    Q_PROPERTY(QColor yellow MEMBER yellow NOTIFY changed)
    Q_PROPERTY(QColor green MEMBER green NOTIFY changed)
    Q_PROPERTY(QColor redFill MEMBER redFill NOTIFY changed)
    Q_PROPERTY(QColor orangeFill MEMBER orangeFill NOTIFY changed)
    Q_PROPERTY(QColor yellowFill MEMBER yellowFill NOTIFY changed)
    Q_PROPERTY(QColor greenFill MEMBER greenFill NOTIFY changed)
    Q_PROPERTY(QColor redTint MEMBER redTint NOTIFY changed)
    Q_PROPERTY(QColor orangeTint MEMBER orangeTint NOTIFY changed)
    Q_PROPERTY(QColor prominentRed MEMBER prominentRed NOTIFY changed)
    Q_PROPERTY(QColor fieldHalo MEMBER fieldHalo NOTIFY changed)
    Q_PROPERTY(QColor scrollBar MEMBER scrollBar NOTIFY changed)
    Q_PROPERTY(QColor scrollBarHover MEMBER scrollBarHover NOTIFY changed)
    Q_PROPERTY(QColor shadow MEMBER shadow NOTIFY changed)
    Q_PROPERTY(QColor bannerShadow MEMBER bannerShadow NOTIFY changed)
    Q_PROPERTY(QColor scrim MEMBER scrim NOTIFY changed)
    Q_PROPERTY(QColor heroFill MEMBER heroFill NOTIFY changed)
    Q_PROPERTY(QColor heroStroke MEMBER heroStroke NOTIFY changed)
    Q_PROPERTY(QColor sealFill MEMBER sealFill NOTIFY changed)
    Q_PROPERTY(QColor sealStroke MEMBER sealStroke NOTIFY changed)
    Q_PROPERTY(QColor stepBehind MEMBER stepBehind NOTIFY changed)
    Q_PROPERTY(QColor stepAhead MEMBER stepAhead NOTIFY changed)
    Q_PROPERTY(QColor appleMusic MEMBER appleMusic NOTIFY changed)
    Q_PROPERTY(QColor prominentAppleMusic MEMBER prominentAppleMusic NOTIFY changed)
    Q_PROPERTY(QColor spotify MEMBER spotify NOTIFY changed)
    Q_PROPERTY(QColor onSpotify MEMBER onSpotify NOTIFY changed)
    Q_PROPERTY(QVariantList inks READ inks NOTIFY changed)
    Q_PROPERTY(QVariantList fills READ fills NOTIFY changed)

public:
    explicit Palette(QObject *parent = nullptr);

    bool dark() const { return m_dark; }
    void setDark(bool dark);

    QColor ink(Ink ink) const;
    QVariantList inks() const;  // the colours of Ink, in its order
    QVariantList fills() const; // what fills a meter for each Ink, in its order

    QColor window, sidebar, card, button, buttonStroke, field, fieldStroke, searchField;
    QColor hover, pressed, fillHover, fillPressed, selection, separator, divider, coverStroke, barTrack;
    QColor primary, secondary, tertiary, quaternary, accentFill, onAccent, accent;
    QColor red, orange, yellow, green, redFill, orangeFill, yellowFill, greenFill, redTint, orangeTint, prominentRed;
    QColor switchOff, fieldHalo, scrollBar, scrollBarHover, shadow, bannerShadow;
    QColor scrim, heroFill, heroStroke, sealFill, sealStroke, stepBehind, stepAhead;
    QColor appleMusic, prominentAppleMusic, spotify, onSpotify;

Q_SIGNALS:
    void changed();

private:
    void fill();

    bool m_dark = false;
};

} // namespace zelk
