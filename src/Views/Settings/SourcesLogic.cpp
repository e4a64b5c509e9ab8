#include "Views/Settings/SourcesLogic.h"

#include "Views/Settings/RunSettings.h"

#include <utility>

namespace zelk {

SourcesLogic::SourcesLogic(AppModel &model, QObject *parent) : SettingsTabLogic(model, parent) {
    connect(this, &SourcesLogic::configChanged, this, [this] { m_order.setEnabled(enabled()); });
    m_order.setEnabled(enabled());
}

std::set<SourceId> SourcesLogic::enabled() const {
    if (const SafeConfig *now = config())
        return {now->sources.begin(), now->sources.end()};
    return {};
}

QVariantList SourcesLogic::runSettings() const {
    QVariantList faces;
    for (int i = 0; i < RunSettings::count; ++i) {
        RunSettingFace face;
        if (const SafeConfig *now = config()) {
            const auto range = RunSettings::rangeOf(i);
            face = {RunSettings::text(now->run, i), RunSettings::valueOf(now->run, i), range.minimum, range.maximum,
                    range.step};
        }
        faces += QVariant::fromValue(face);
    }
    return faces;
}

void SourcesLogic::fill() {
    m_order.fill(hasConfig() ? config()->sources : std::vector<SourceId>());
}

void SourcesLogic::move(int from, int to) {
    m_order.move(from, to);
    apply([this] {
        ConfigPatch patch;
        patch.sources = m_order.only(enabled());
        return std::optional(patch);
    });
}

void SourcesLogic::setEnabled(int row, bool enabling) {
    auto wanted = enabled();
    if (enabling)
        wanted.insert(m_order.at(row));
    else
        wanted.erase(m_order.at(row));
    apply([this, wanted = std::move(wanted)] {
        ConfigPatch patch;
        patch.sources = m_order.only(wanted);
        return std::optional(patch);
    });
}

void SourcesLogic::setRunSetting(int index, double value) {
    apply([this, index, value]() -> std::optional<ConfigPatch> {
        const SafeConfig *now = config();
        if (!now)
            return std::nullopt;
        ConfigPatch patch;
        patch.run = RunSettings::changed(now->run, index, value);
        return patch;
    });
}

} // namespace zelk
