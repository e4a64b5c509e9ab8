#include "Styling/Palette.h"

namespace zelk {

namespace {

constexpr QRgb black = 0x000000;
constexpr QRgb white = 0xFFFFFF;

QColor at(QRgb rgb, double opacity = 1) {
    QColor color = QColor::fromRgb(rgb);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

struct Shade {
    QColor Palette::*slot;
    QColor light, dark;
};

const std::vector<Shade> &shades() {
    static const std::vector<Shade> table{
        {&Palette::window, at(0xF6F7F9), at(0x1C1D21)},
        {&Palette::sidebar, at(0xECEEF2), at(0x17181B)},
        {&Palette::card, at(0xFFFFFF), at(0x27282E)},
        {&Palette::button, at(0xFFFFFF), at(0x37383F)},
        {&Palette::buttonStroke, at(black, 0.14), at(white, 0.10)},
        {&Palette::field, at(0xFFFFFF), at(0x1F2025)},
        {&Palette::fieldStroke, at(black, 0.16), at(white, 0.14)},
        {&Palette::searchField, at(white, 0.75), at(white, 0.05)},
        {&Palette::hover, at(black, 0.04), at(white, 0.05)},
        {&Palette::pressed, at(black, 0.08), at(white, 0.09)},
        {&Palette::fillHover, at(black, 0.06), at(black, 0.06)},
        {&Palette::fillPressed, at(black, 0.12), at(black, 0.12)},
        {&Palette::selection, at(0x5552D9, 0.14), at(0x6663E4, 0.28)},
        {&Palette::separator, at(black, 0.20), at(white, 0.22)},
        {&Palette::divider, at(black, 0.10), at(white, 0.11)},
        {&Palette::coverStroke, at(black, 0.08), at(white, 0.088)},
        {&Palette::barTrack, at(black, 0.10), at(white, 0.13)},
        {&Palette::switchOff, at(0xC9CDD5), at(0x4A4C54)},
        {&Palette::primary, at(0x1B1D22), at(0xF2F3F5)},
        {&Palette::secondary, at(0x565B66), at(0xAFB3BD)},
        {&Palette::tertiary, at(0x626772), at(0x9BA0AB)},
        {&Palette::quaternary, at(0xE4E7EC), at(0x34363D)},
        {&Palette::accentFill, at(0x5552D9), at(0x6663E4)},
        {&Palette::onAccent, at(white), at(white)},
        {&Palette::accent, at(0x4B48CC), at(0xA9A7FF)},
        {&Palette::red, at(0xB9222A), at(0xFF8A84)},
        {&Palette::orange, at(0x9A4600), at(0xFFB066)},
        {&Palette::yellow, at(0x785B00), at(0xF2CE55)},
        {&Palette::green, at(0x156B36), at(0x5FD68A)},
        {&Palette::redFill, at(0xD92D35), at(0xF2555A)},
        {&Palette::orangeFill, at(0xDB6B00), at(0xF58A1F)},
        {&Palette::yellowFill, at(0xB38600), at(0xEBC13B)},
        {&Palette::greenFill, at(0x1F9D50), at(0x36B865)},
        {&Palette::redTint, at(0xD92D35, 0.15), at(0xF2555A, 0.22)},
        {&Palette::orangeTint, at(0xFF8A00, 0.15), at(0xF58A1F, 0.22)},
        {&Palette::prominentRed, at(0xD92D35), at(0xC9343B)},
        {&Palette::fieldHalo, at(0x4B48CC, 0.35), at(0xA9A7FF, 0.35)},
        {&Palette::scrollBar, at(black, 0.28), at(white, 0.28)},
        {&Palette::scrollBarHover, at(black, 0.45), at(white, 0.45)},
        {&Palette::shadow, at(black, 0.22), at(black, 0.55)},
        {&Palette::bannerShadow, at(black, 0.12), at(black, 0.45)},
        {&Palette::scrim, at(0x0D0D14, 0.36), at(0x0D0D14, 0.36)},
        {&Palette::heroFill, at(0x5552D9, 0.10), at(0x6663E4, 0.10)},
        {&Palette::heroStroke, at(0x5552D9, 0.22), at(0x6663E4, 0.22)},
        {&Palette::sealFill, at(0x1F9D50, 0.12), at(0x36B865, 0.12)},
        {&Palette::sealStroke, at(0x1F9D50, 0.22), at(0x36B865, 0.22)},
        {&Palette::stepBehind, at(0x5552D9, 0.50), at(0x6663E4, 0.50)},
        {&Palette::stepAhead, at(0x565B66, 0.30), at(0xAFB3BD, 0.30)},
        {&Palette::appleMusic, at(Tokens::Source::apple), at(Tokens::Source::apple)},
        {&Palette::prominentAppleMusic, at(0xDB343B), at(0xDB343B)},
        {&Palette::spotify, at(Tokens::Source::spotify), at(Tokens::Source::spotify)},
        {&Palette::onSpotify, at(0x1B1D22), at(0x1B1D22)},
    };
    return table;
}

} // namespace

Palette::Palette(QObject *parent) : QObject(parent) {
    fill();
}

void Palette::setDark(bool dark) {
    if (m_dark == dark)
        return;
    m_dark = dark;
    fill();
    Q_EMIT changed();
}

void Palette::fill() {
    for (const Shade &shade : shades())
        this->*shade.slot = m_dark ? shade.dark : shade.light;
}

QColor Palette::ink(Ink ink) const {
    switch (ink) {
    case Ink::primary:
        return primary;
    case Ink::secondary:
        return secondary;
    case Ink::tertiary:
        return tertiary;
    case Ink::accent:
        return accent;
    case Ink::red:
        return red;
    case Ink::orange:
        return orange;
    case Ink::yellow:
        return yellow;
    case Ink::green:
        return green;
    }
    return primary;
}

QVariantList Palette::inks() const {
    QVariantList all;
    for (const Ink each :
         {Ink::primary, Ink::secondary, Ink::tertiary, Ink::accent, Ink::red, Ink::orange, Ink::yellow, Ink::green})
        all += ink(each);
    return all;
}

QVariantList Palette::fills() const {
    return {accentFill, accentFill, accentFill, accentFill, redFill, orangeFill, yellowFill, greenFill};
}

} // namespace zelk
