#include "Styling/Measures.h"

#include <QFontDatabase>
#include <QGuiApplication>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

QFont typeface(int pixelSize, QFont::Weight weight) {
    static const bool hasInter = QFontDatabase::hasFamily(u"Inter"_s);
    QFont result = hasInter ? QFont(u"Inter"_s) : QGuiApplication::font();
    result.setPixelSize(pixelSize);
    result.setWeight(weight);
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

QFont tracked(QFont font, double pixels) {
    font.setLetterSpacing(QFont::AbsoluteSpacing, pixels);
    return font;
}

QFont capitals(QFont font) {
    font.setCapitalization(QFont::AllUppercase);
    return font;
}

QFont monospaced(int pixelSize) {
    QFont result = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    result.setPixelSize(pixelSize);
    return result;
}

} // namespace

TypeScale::TypeScale(double textScale) {
    const auto font = [textScale](int pixelSize, QFont::Weight weight) {
        return typeface(Tokens::scaled(pixelSize, textScale), weight);
    };
    title = tracked(font(22, QFont::Bold), -0.3 * textScale);
    title2 = font(17, QFont::Bold);
    emptyTitle = font(17, QFont::DemiBold);
    title3 = font(15, QFont::DemiBold);
    headline = font(13, QFont::DemiBold);
    body = font(13, QFont::Normal);
    bodyMedium = font(13, QFont::Medium);
    callout = font(12, QFont::Normal);
    calloutMedium = font(12, QFont::Medium);
    calloutSemibold = font(12, QFont::DemiBold);
    caption = font(11, QFont::Normal);
    captionMedium = font(11, QFont::Medium);
    captionSemibold = font(11, QFont::DemiBold);
    caption2Semibold = font(10, QFont::DemiBold);
    category = capitals(captionSemibold);
    log = monospaced(Tokens::scaled(10, textScale));
}

void MotionScale::setReduced(bool reduced) {
    if (m_reduced == reduced)
        return;
    m_reduced = reduced;
    Q_EMIT changed();
}

} // namespace zelk
