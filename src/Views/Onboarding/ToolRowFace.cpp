#include "Views/Onboarding/ToolRowFace.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

constexpr double whole = 100; // percent

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(zelk)
};

void setProgress(ToolRowFace &face, std::optional<double> percent) {
    face.busy = !percent;
    face.measured = percent.has_value();
    if (!percent)
        return;
    face.value = std::clamp(*percent / whole, 0.0, 1.0);
    face.valueText = Texts::tr("%1 percent").arg(std::lround(face.value * whole));
}

} // namespace

ToolRowFace toolRowFace(const ToolProvisioningStore::ToolProgress &tool) {
    ToolRowFace face;
    face.name = tool.name;
    face.symbol = u"arrow.down.circle"_s;
    switch (tool.phase) {
    case ToolPhase::download:
        setProgress(face, tool.percent);
        break;
    case ToolPhase::verify:
        face.busy = true;
        face.text = Texts::tr("Verifying…");
        break;
    case ToolPhase::install:
        face.busy = true;
        face.text = Texts::tr("Installing…");
        break;
    case ToolPhase::done:
        face.symbol = u"checkmark.circle.fill"_s;
        face.ink = Ink::green;
        face.text = Texts::tr("Installed");
        face.done = true;
        break;
    case ToolPhase::error:
        face.symbol = u"exclamationmark.triangle.fill"_s;
        face.ink = Ink::red;
        face.text = tool.detail.value_or(Texts::tr("Couldn't install"));
        face.failed = true;
        break;
    }
    return face;
}

} // namespace zelk
