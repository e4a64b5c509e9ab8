#pragma once

#include <QObject>

#include <memory>

class QDBusConnection;

namespace zelk {

/// How the desktop's user wants all applications to look and move. What the desktop doesn't say is false, or no
/// preference, or a scale of 1; so is everything until it has answered. Values change while the application runs, and
/// stay when who told them goes.
class DesktopSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(ColorScheme colorScheme READ colorScheme NOTIFY colorSchemeChanged)
    Q_PROPERTY(bool increasedContrast READ increasedContrast NOTIFY increasedContrastChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY textScaleChanged)
    Q_PROPERTY(bool reducedTransparency READ reducedTransparency CONSTANT)

public:
    enum class ColorScheme { noPreference, dark, light };
    Q_ENUM(ColorScheme)

    /// Those of this session. Never waits for an answer.
    static std::unique_ptr<DesktopSettings> ofSession();
    /// Those told on that bus, which may be none.
    static std::unique_ptr<DesktopSettings> on(const QDBusConnection &bus);

    ColorScheme colorScheme() const { return _colorScheme; }
    bool increasedContrast() const { return _increasedContrast; }
    bool reducedMotion() const { return _reducedMotion; }
    /// How many times as large as usual text is to be; always a positive number.
    double textScale() const { return _textScale; }
    /// Nothing on this desktop says so.
    bool reducedTransparency() const { return false; }

Q_SIGNALS:
    void colorSchemeChanged();
    void increasedContrastChanged();
    void reducedMotionChanged();
    void textScaleChanged();

protected:
    DesktopSettings() = default;

    void setColorScheme(ColorScheme colorScheme);
    void setIncreasedContrast(bool isIncreased);
    void setReducedMotion(bool isReduced);
    void setTextScale(double scale);

private:
    ColorScheme _colorScheme = ColorScheme::noPreference;
    bool _increasedContrast = false;
    bool _reducedMotion = false;
    double _textScale = 1;
};

} // namespace zelk
