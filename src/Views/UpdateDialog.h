#pragma once

#include "Views/UpdateTexts.h"

#include <QObject>
#include <qqmlregistration.h>

#include <memory>

class QQuickWindow;

namespace zelk {

class DialogHost;

// What the dialog shows at the moment. While it leaves, it keeps what it said.
class UpdateLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its dialog")
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString heading READ heading NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString primaryText READ primaryText NOTIFY changed)
    Q_PROPERTY(QString secondaryText READ secondaryText NOTIFY changed)
    Q_PROPERTY(QString tertiaryText READ tertiaryText NOTIFY changed)
    Q_PROPERTY(QString notes READ notes NOTIFY changed)
    Q_PROPERTY(bool busy READ busy NOTIFY changed)
    Q_PROPERTY(bool hasProgress READ hasProgress NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)

public:
    void show(const UpdateFace &face);

    const QString &symbol() const { return m_face.symbol; }
    const QString &heading() const { return m_face.heading; }
    const QString &text() const { return m_face.text; }
    const QString &primaryText() const { return m_face.primary.text; }
    const QString &secondaryText() const { return m_face.secondary.text; }
    const QString &tertiaryText() const { return m_face.tertiary.text; }
    const QString &notes() const { return m_face.notes; }
    bool busy() const { return m_face.busy; }
    bool hasProgress() const { return m_face.progress.has_value(); }
    double progress() const { return m_face.progress.value_or(0); }

    Q_INVOKABLE void primary() { Q_EMIT answered(m_face.primary.answer); }
    Q_INVOKABLE void secondary() { Q_EMIT answered(m_face.secondary.answer); }
    Q_INVOKABLE void tertiary() { Q_EMIT answered(m_face.tertiary.answer); }
    Q_INVOKABLE void close() { Q_EMIT answered(m_face.closed); }

Q_SIGNALS:
    void changed();
    // Other buttons than before.
    void turned();
    void answered(zelk::UpdateAnswer answer);

private:
    UpdateFace m_face;
};

// The updater's window: one dialog beside the main window, which stays usable.
class UpdateDialog final : public UpdateUserDriver {
public:
    // `host` must outlive it.
    explicit UpdateDialog(DialogHost &host);
    ~UpdateDialog() override;
    Q_DISABLE_COPY_MOVE(UpdateDialog)

    void show(const UpdateScene::Any &scene) override;
    void raise() override;

private:
    DialogHost &m_host;
    UpdateLogic m_logic;
    std::unique_ptr<QQuickWindow> m_window; // made when it is first needed; goes before what it shows
};

} // namespace zelk
