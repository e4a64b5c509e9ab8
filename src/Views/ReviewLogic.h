#pragma once

#include "App/AppModel.h"
#include "Styling/Tokens.h"
#include "Views/FrameTick.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <qqmlregistration.h>

namespace zelk {

// One candidate as its row reads.
struct CandidateFace {
    Q_GADGET
    QML_ANONYMOUS
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString confidence MEMBER confidence CONSTANT) // "68%"; empty when it has none
    Q_PROPERTY(int confidenceInk READ confidenceInkIndex CONSTANT)
    Q_PROPERTY(QString sourceTag MEMBER sourceTag CONSTANT) // "YouTube · OPUS · 160 kbps"
    Q_PROPERTY(QString delta MEMBER delta CONSTANT)         // how much longer than the track it is: "+3s"
    Q_PROPERTY(int deltaInk READ deltaInkIndex CONSTANT)

public:
    QString id, title, confidence, sourceTag, delta;
    Ink confidenceInk = Ink::secondary;
    Ink deltaInk = Ink::secondary;
    bool operator==(const CandidateFace &) const = default;

private:
    int confidenceInkIndex() const { return static_cast<int>(confidenceInk); }
    int deltaInkIndex() const { return static_cast<int>(deltaInk); }
};

CandidateFace candidateFace(const CandidateDTO &candidate, double trackSeconds);

// How sure a match is, as a colour: `confidence` from 0 to 1.
Ink confidenceInk(double confidence);

// What the panel shows of the row under review, and what its buttons decide. What the user has picked or typed stays
// when the focus moves on.
class ReviewLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool presented READ presented NOTIFY presentedChanged)
    // Whether there is a row to decide on; the panel says that all is done where there isn't.
    Q_PROPERTY(bool hasTrack READ hasTrack NOTIFY trackChanged)
    Q_PROPERTY(QString title READ title NOTIFY trackChanged)
    Q_PROPERTY(QString artist READ artist NOTIFY trackChanged)
    Q_PROPERTY(QString album READ album NOTIFY trackChanged)
    Q_PROPERTY(zelk::ArtworkRef artwork READ artwork NOTIFY trackChanged)
    Q_PROPERTY(QString duration READ duration NOTIFY trackChanged)
    Q_PROPERTY(double bestConfidence READ bestConfidence NOTIFY trackChanged) // 0 to 1
    Q_PROPERTY(int bestPercent READ bestPercent NOTIFY trackChanged)
    Q_PROPERTY(int bestInk READ bestInk NOTIFY trackChanged)
    Q_PROPERTY(bool hasCandidates READ hasCandidates NOTIFY trackChanged)
    // A list of CandidateFace, in the engine's order.
    Q_PROPERTY(QVariantList candidates READ candidates NOTIFY trackChanged)
    // "Review 1 of 2"; empty where there is nowhere to step to.
    Q_PROPERTY(QString stepperText READ stepperText NOTIFY stepperChanged)
    Q_PROPERTY(QString selectedCandidateId READ selectedCandidateId WRITE setSelectedCandidateId NOTIFY
                   selectedCandidateIdChanged)
    Q_PROPERTY(QString pastedURL READ pastedURL WRITE setPastedURL NOTIFY pastedURLChanged)

public:
    explicit ReviewLogic(AppModel &model, QObject *parent = nullptr);

    bool presented() const { return m_model.isInspectorPresented(); }
    bool hasTrack() const { return track() != nullptr; }
    QString title() const;
    QString artist() const;
    QString album() const;
    ArtworkRef artwork() const;
    QString duration() const;
    double bestConfidence() const;
    int bestPercent() const;
    int bestInk() const { return static_cast<int>(confidenceInk(bestConfidence())); }
    bool hasCandidates() const;
    QVariantList candidates() const;
    QString stepperText() const { return m_stepperText; }
    QString selectedCandidateId() const { return m_selectedCandidateId; }
    void setSelectedCandidateId(const QString &id);
    QString pastedURL() const { return m_pastedURL; }
    void setPastedURL(const QString &url);

    Q_INVOKABLE void step(int delta) { m_model.stepReview(delta); }
    Q_INVOKABLE void close() { m_model.setInspectorPresented(false); }
    Q_INVOKABLE void skip();
    Q_INVOKABLE void acceptBest();
    Q_INVOKABLE void useSelected();
    Q_INVOKABLE void submitURL();

Q_SIGNALS:
    void presentedChanged();
    void trackChanged();
    void stepperChanged();
    void selectedCandidateIdChanged();
    void pastedURLChanged();

private:
    const TrackModel *track() const { return m_model.resolvedFocusedReview(); }
    const std::vector<CandidateDTO> *waitingCandidates() const;
    // Sends the decision and goes on to the head of what is left; closes the panel when nothing is.
    void decide(const ReviewDecision &decision);
    void updateStepper();

    AppModel &m_model;
    QString m_stepperText;
    QString m_selectedCandidateId; // empty when there is none
    QString m_pastedURL;
    FrameTick m_tick;
};

} // namespace zelk
