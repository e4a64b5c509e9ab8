#include "Platform/ApplicationActivation.h"

#include <QGuiApplication>

namespace zelk {

std::unique_ptr<ApplicationActivation> ApplicationActivation::make() {
    auto activation = std::make_unique<ApplicationActivation>();
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, activation.get(),
            [told = activation.get()](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive)
                    Q_EMIT told->didBecomeActive();
            });
    return activation;
}

} // namespace zelk
