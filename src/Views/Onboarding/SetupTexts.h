#pragma once

#include "App/SetupCoordinator.h"

#include <QObject>
#include <QString>

#include <optional>

namespace zelk {

// What stands over a screen of the setup.
struct SetupHeaderInfo {
    Q_GADGET
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString subtitle MEMBER subtitle CONSTANT)

public:
    QString symbol, title;
    QString subtitle; // empty for none

    bool operator==(const SetupHeaderInfo &) const = default;
};

// None for the screens that have a head of their own.
std::optional<SetupHeaderInfo> headerInfo(SetupCoordinator::Screen screen);

// What a screen is called, in its header or in its own head.
QString screenTitle(SetupCoordinator::Screen screen);

// What the button that goes on says.
QString primaryText(SetupCoordinator::Screen screen);

// Whether a screen may be passed over: where what it asks for isn't needed.
bool offersSkip(SetupCoordinator::Screen screen);

} // namespace zelk
