#include "Terminal/Verbs.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

Span::Tone toneOf(const QString &status) {
    return status == "ok"_L1 ? Span::Tone::Good : status == "warn"_L1 ? Span::Tone::Warning : Span::Tone::Bad;
}

bool canBeFixed(const DoctorCheck &check) {
    return check.fixable.value_or(false);
}

void show(Console &console, const std::vector<DoctorCheck> &checks) {
    int columns = 0;
    for (const DoctorCheck &check : checks) {
        columns = std::max(columns, columnsOf(check.title.value_or(check.id)));
    }
    for (const DoctorCheck &check : checks) {
        const QString fix = canBeFixed(check) ? u" \"zelk doctor --fix\" makes it."_s : QString();
        console.line({{padded(check.status, 4), toneOf(check.status)},
                      {u"  "_s + padded(check.title.value_or(check.id), columns) + u"  "_s +
                       check.detail.value_or(QString()) + fix}});
    }
}

/// Returns whether all that can be fixed has been.
bool fixAll(Session &session, const std::vector<DoctorCheck> &checks) {
    bool fixed = true;
    for (const DoctorCheck &check : checks) {
        try {
            if (canBeFixed(check)) {
                session.engine.doctorFix(check.id);
            }
        } catch (const MethodError &error) {
            session.console.complain(u"zelk: "_s + error.message());
            fixed = false;
        }
    }
    return fixed;
}

} // namespace

int runDoctor(Session &session, bool fix) {
    std::vector<DoctorCheck> checks = session.engine.runDoctor();
    bool fixed = true;
    if (fix && std::any_of(checks.begin(), checks.end(), canBeFixed)) {
        fixed = fixAll(session, checks);
        checks = session.engine.runDoctor();
    }
    passOn(session);
    show(session.console, checks);
    const bool fails = std::any_of(checks.begin(), checks.end(), [](const DoctorCheck &check) {
        return check.status != "ok"_L1 && check.status != "warn"_L1;
    });
    return fails || !fixed ? somethingFailed : allDone;
}

} // namespace zelk::engine
