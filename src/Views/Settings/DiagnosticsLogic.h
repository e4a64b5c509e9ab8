#pragma once

#include "App/AppModel.h"
#include "Styling/Tokens.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <qqmlregistration.h>

namespace zelk {

// One finding of the doctor as it is shown.
struct CheckFace {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString detail MEMBER detail CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(int ink READ inkIndex CONSTANT)
    Q_PROPERTY(bool fixable MEMBER fixable CONSTANT)
    Q_PROPERTY(QString status MEMBER status CONSTANT)

public:
    QString title;
    QString detail; // empty for none
    QString symbol;
    Ink ink = Ink::secondary;
    bool fixable = false;
    QString status; // what the symbol says

    int inkIndex() const { return static_cast<int>(ink); }
    bool operator==(const CheckFace &) const = default;
};

CheckFace faceOf(const DoctorCheck &check);

// The tab of the engine's doctor.
class DiagnosticsLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool present READ present NOTIFY checksChanged)       // there is a doctor to ask
    Q_PROPERTY(QVariantList checks READ checks NOTIFY checksChanged) // CheckFaces
    Q_PROPERTY(bool running READ running NOTIFY runningChanged)
    // Why the last run or fix failed; empty when it didn't.
    Q_PROPERTY(QString lastError READ lastError NOTIFY lastErrorChanged)

public:
    explicit DiagnosticsLogic(AppModel &model, QObject *parent = nullptr);

    bool present() const { return m_store; }
    QVariantList checks() const;
    bool running() const { return m_store && m_store->isRunning(); }
    QString lastError() const { return m_store ? m_store->lastError().value_or(QString()) : QString(); }

    // The store keeps no second run from starting: whoever offers these does.
    Q_INVOKABLE void runAll();
    Q_INVOKABLE void fix(int index);

Q_SIGNALS:
    void checksChanged();
    void runningChanged();
    void lastErrorChanged();

private:
    void attach();

    AppModel &m_model;
    QPointer<DiagnosticsStore> m_store;
};

} // namespace zelk
