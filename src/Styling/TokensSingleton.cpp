#include "Styling/TokensSingleton.h"

#include "Styling/GlassRole.h"
#include "Styling/Symbols.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <utility>

namespace zelk {

TokensSingleton::TokensSingleton(QObject *parent) : QObject(parent) {
    followApplication();
    qApp->installEventFilter(this);
}

QUrl TokensSingleton::symbol(const QString &name, const QColor &color) const {
    return Symbols::source(name, color);
}

double TokensSingleton::hairline(double devicePixelRatio) const {
    return snappedToDevice(m_size->hairline, devicePixelRatio);
}

bool TokensSingleton::hasSymbol(const QString &name) const {
    return Symbols::contains(name);
}

QString TokensSingleton::widest(const QString &text) const {
    QString result = text;
    for (QChar &c : result) {
        if (c.isDigit())
            c = u'4';
    }
    return result;
}

bool TokensSingleton::eventFilter(QObject *watched, QEvent *event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        followApplication();
    return QObject::eventFilter(watched, event);
}

void TokensSingleton::setTextScale(double scale) {
    const double held = std::clamp(scale, Tokens::leastTextScale, Tokens::mostTextScale);
    if (m_textScale == held)
        return;
    m_textScale = held;
    // The former ones stay until every view has read the new ones.
    const auto size = std::exchange(m_size, std::make_unique<SizeScale>(held));
    const auto type = std::exchange(m_type, std::make_unique<TypeScale>(held));
    Q_EMIT textScaleChanged();
}

void TokensSingleton::preferDark(std::optional<bool> dark) {
    m_prefersDark = dark;
    followApplication();
}

void TokensSingleton::followApplication() {
    const QPalette palette = QGuiApplication::palette();
    const bool isDark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    m_palette.setDark(m_prefersDark.value_or(isDark));
}

} // namespace zelk
