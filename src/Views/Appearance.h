#pragma once

#include "Platform/DesktopSettings.h"
#include "Platform/UserDefaults.h"
#include "Styling/GlassResolver.h"

#include <QObject>

#include <memory>

namespace zelk {

class TokensSingleton;

// How this application's windows are to look and move: what the desktop's user wants of all applications, and what they
// chose for this one.
class Appearance : public QObject {
    Q_OBJECT
    // The user's own wish for opaque surfaces, kept in the user defaults.
    Q_PROPERTY(bool reduceGlassEffects READ reduceGlassEffects WRITE setReduceGlassEffects NOTIFY changed)

public:
    Appearance(std::shared_ptr<DesktopSettings> desktop, std::shared_ptr<UserDefaults> defaults,
               QObject *parent = nullptr);

    bool reduceGlassEffects() const;
    void setReduceGlassEffects(bool reduce);

    GlassResolver glass() const;
    // Has those tokens follow, from now to their end.
    void dress(TokensSingleton &tokens);

Q_SIGNALS:
    void changed();

private:
    void apply(TokensSingleton &tokens) const;

    const std::shared_ptr<DesktopSettings> m_desktop;
    const std::shared_ptr<UserDefaults> m_defaults;
};

} // namespace zelk
