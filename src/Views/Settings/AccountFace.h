#pragma once

#include "Platform/ConsentStatus.h"
#include "Styling/Tokens.h"

#include <QObject>
#include <qqmlregistration.h>

namespace zelk {

// How a source of playlists stands, and what the button beside that does about it.
struct AccountFace {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString state MEMBER state CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(int ink READ inkIndex CONSTANT)
    Q_PROPERTY(QString action MEMBER action CONSTANT)
    Q_PROPERTY(bool destructive MEMBER destructive CONSTANT)

public:
    QString state; // empty when nothing is said of it
    QString symbol;
    Ink ink = Ink::secondary;
    QString action; // empty when there is nothing to do
    bool destructive = false;

    int inkIndex() const { return static_cast<int>(ink); }
    bool operator==(const AccountFace &) const = default;
};

AccountFace accountFace(bool connected);
AccountFace localFace(ConsentStatus status);

} // namespace zelk
