#pragma once

#include "State/ToolProvisioningStore.h"
#include "Styling/Tokens.h"

#include <QObject>
#include <QString>

namespace zelk {

// How the row of one tool looks while the tools are installed.
struct ToolRowFace {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(int ink READ inkIndex CONSTANT)
    Q_PROPERTY(bool busy MEMBER busy CONSTANT)
    Q_PROPERTY(bool measured MEMBER measured CONSTANT)
    Q_PROPERTY(double value MEMBER value CONSTANT)
    Q_PROPERTY(QString valueText MEMBER valueText CONSTANT)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(bool failed MEMBER failed CONSTANT)
    Q_PROPERTY(bool done MEMBER done CONSTANT)

public:
    QString name, symbol;
    Ink ink = Ink::accent;
    bool busy = false;     // with an indicator that says nothing of how far it is
    bool measured = false; // with a bar
    double value = 0;      // of the bar, 0 to 1
    QString valueText;
    QString text; // under the name; empty for none
    bool failed = false;
    bool done = false;

    int inkIndex() const { return static_cast<int>(ink); }
    bool operator==(const ToolRowFace &) const = default;
};

ToolRowFace toolRowFace(const ToolProvisioningStore::ToolProgress &tool);

} // namespace zelk
