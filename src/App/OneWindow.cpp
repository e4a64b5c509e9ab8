#include "App/OneWindow.h"

#include "Platform/ActivationToken.h"
#include "Support/Logger.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

const Logger &logger() {
    static const Logger made("app");
    return made;
}

} // namespace

bool OneWindow::goesOn(SingleInstance &instance, const QString &activationToken) {
    switch (instance.claim(activationToken)) {
    case SingleInstance::Claim::answered:
        logger().info(u"zelk is running already; its window has come to the front."_s);
        return false;
    case SingleInstance::Claim::unanswered:
        logger().error(
            u"zelk is running already, but doesn't answer. It is left alone, and this one starts beside it."_s);
        return true;
    case SingleInstance::Claim::first:
    case SingleInstance::Claim::none:
        return true;
    }
    Q_UNREACHABLE();
}

void OneWindow::answer(const SingleInstance &instance, std::function<void()> bringToFront) {
    QObject::connect(&instance, &SingleInstance::calledToFront, &instance,
                     [bringToFront = std::move(bringToFront)](const QString &activationToken) {
                         logger().debug(u"Another start brings the window to the front."_s);
                         const ActivationToken token(activationToken);
                         bringToFront();
                     });
}

} // namespace zelk
