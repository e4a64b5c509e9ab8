#include "Views/Settings/RunSettings.h"

#include <QCoreApplication>

#include <algorithm>
#include <variant>

namespace zelk::RunSettings {

namespace {

struct Setting {
    std::variant<qint64 SafeConfig::Run::*, double SafeConfig::Run::*> field;
    Range range;
    const char *text; // with the value's place
};

const Setting &setting(int index) {
    using Run = SafeConfig::Run;
    static const std::array<Setting, count> table{{
        {&Run::searchCount, {1, 20, 1}, QT_TRANSLATE_NOOP("RunSettings", "Results per source: %1")},
        {&Run::concurrency, {1, 8, 1}, QT_TRANSLATE_NOOP("RunSettings", "Parallel downloads: %1")},
        {&Run::searchTimeoutSec, {5, 120, 5}, QT_TRANSLATE_NOOP("RunSettings", "Search timeout: %1s")},
        {&Run::cooloffHours, {0, 168, 1}, QT_TRANSLATE_NOOP("RunSettings", "Cool-off after a failure: %1h")},
    }};
    return table.at(static_cast<std::size_t>(index));
}

} // namespace

Range rangeOf(int index) {
    return setting(index).range;
}

double valueOf(const SafeConfig::Run &run, int index) {
    return std::visit([&run](auto field) { return static_cast<double>(run.*field); }, setting(index).field);
}

QString text(const SafeConfig::Run &run, int index) {
    const auto whole = static_cast<qint64>(valueOf(run, index));
    return QCoreApplication::translate("RunSettings", setting(index).text).arg(whole);
}

SafeConfig::Run changed(SafeConfig::Run run, int index, double value) {
    const Range range = rangeOf(index);
    const double kept = std::clamp(value, range.minimum, range.maximum);
    std::visit([&run, kept](auto field) { run.*field = static_cast<std::remove_cvref_t<decltype(run.*field)>>(kept); },
               setting(index).field);
    return run;
}

} // namespace zelk::RunSettings
