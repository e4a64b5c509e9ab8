#include "Views/PlaylistGroupHeader.h"

#include "Styling/Format.h"

#include <QCoreApplication>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

QString groupCountsLine(int completed, int total, int reviewCount, int failedCount) {
    QStringList parts{u"%1 / %2"_s.arg(completed).arg(total)};
    if (reviewCount > 0)
        parts += QCoreApplication::translate("zelk", "%1 need review").arg(reviewCount);
    if (failedCount > 0)
        parts += QCoreApplication::translate("zelk", "%1 failed").arg(failedCount);
    return parts.join(u" · "_s);
}

std::optional<StatusBadge> groupBadge(std::optional<Finish> status) {
    if (!status)
        return std::nullopt;
    switch (*status) {
    case Finish::ok:
        return StatusBadge{u"checkmark.circle.fill"_s, Ink::green, QCoreApplication::translate("zelk", "Done")};
    case Finish::lowConfidence:
        return StatusBadge{u"exclamationmark.triangle.fill"_s, Ink::orange,
                           QCoreApplication::translate("zelk", "Low confidence")};
    case Finish::failed:
        return StatusBadge{u"xmark.circle.fill"_s, Ink::red, QCoreApplication::translate("zelk", "Failed")};
    case Finish::skipped:
        return StatusBadge{u"minus.circle"_s, Ink::secondary, QCoreApplication::translate("zelk", "Skipped")};
    }
    return std::nullopt;
}

QString percentText(double fraction) {
    return QCoreApplication::translate("zelk", "%1 percent").arg(Format::percent(fraction));
}

} // namespace zelk
