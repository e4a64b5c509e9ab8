#include "Views/Settings/DiagnosticsLogic.h"

#include <QCoreApplication>

#include <tuple>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

std::tuple<QString, Ink, QString> mark(const QString &status) {
    if (status == u"ok")
        return {u"checkmark.circle.fill"_s, Ink::green, QCoreApplication::translate("zelk", "OK")};
    if (status == u"warn")
        return {u"exclamationmark.triangle.fill"_s, Ink::orange, QCoreApplication::translate("zelk", "Warning")};
    if (status == u"fail")
        return {u"xmark.circle.fill"_s, Ink::red, QCoreApplication::translate("zelk", "Failed")};
    return {u"minus.circle"_s, Ink::secondary, QCoreApplication::translate("zelk", "Skipped")};
}

} // namespace

CheckFace faceOf(const DoctorCheck &check) {
    CheckFace face;
    face.title = check.title.value_or(check.id);
    face.detail = check.detail.value_or(QString());
    std::tie(face.symbol, face.ink, face.status) = mark(check.status);
    face.fixable = check.fixable.value_or(false);
    return face;
}

DiagnosticsLogic::DiagnosticsLogic(AppModel &model, QObject *parent) : QObject(parent), m_model(model) {
    connect(&m_model, &AppModel::diagnosticsChanged, this, &DiagnosticsLogic::attach);
    attach();
}

void DiagnosticsLogic::attach() {
    if (m_store == m_model.diagnostics())
        return;
    m_store = m_model.diagnostics();
    connect(m_store, &DiagnosticsStore::checksChanged, this, &DiagnosticsLogic::checksChanged);
    connect(m_store, &DiagnosticsStore::isRunningChanged, this, &DiagnosticsLogic::runningChanged);
    connect(m_store, &DiagnosticsStore::lastErrorChanged, this, &DiagnosticsLogic::lastErrorChanged);
    Q_EMIT checksChanged();
    Q_EMIT runningChanged();
    Q_EMIT lastErrorChanged();
}

QVariantList DiagnosticsLogic::checks() const {
    QVariantList faces;
    if (m_store) {
        for (const DoctorCheck &each : m_store->checks())
            faces += QVariant::fromValue(faceOf(each));
    }
    return faces;
}

void DiagnosticsLogic::runAll() {
    if (DiagnosticsStore *const store = m_store)
        startTask(store, [store](const std::stop_token &) { return store->runDoctor(); });
}

void DiagnosticsLogic::fix(int index) {
    if (!m_store || std::cmp_greater_equal(index, m_store->checks().size()))
        return;
    startTask(m_store.data(), [store = m_store.data(), id = m_store->checks().at(static_cast<std::size_t>(index)).id](
                                  const std::stop_token &) { return store->fix(id); });
}

} // namespace zelk
