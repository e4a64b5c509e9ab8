#pragma once

#include "Styling/GlassResolver.h"

#include <QObject>
#include <qqmlregistration.h>

namespace zelk {

// What the surfaces of one engine's windows go by.
class GlassEnvironment : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(bool usesTranslucency READ usesTranslucency NOTIFY changed)

public:
    const GlassResolver &resolver() const { return m_resolver; }
    void setResolver(const GlassResolver &resolver) {
        if (m_resolver == resolver)
            return;
        m_resolver = resolver;
        Q_EMIT changed();
    }
    bool usesTranslucency() const { return m_resolver.usesTranslucency(); }

Q_SIGNALS:
    void changed();

private:
    GlassResolver m_resolver = GlassResolver::fallback();
};

} // namespace zelk
