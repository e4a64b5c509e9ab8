#pragma once

#include "Platform/FolderPanel.h"
#include "Support/OneShot.h"

#include <QObject>
#include <QUrl>
#include <qqmlregistration.h>

#include <memory>

class QQmlEngine;

namespace zelk {

// One choice of a folder as its dialog knows it.
class FolderChoice : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the choice")
    Q_PROPERTY(QString title MEMBER m_title CONSTANT)
    Q_PROPERTY(QUrl start MEMBER m_start CONSTANT)

public:
    FolderChoice(QString title, const QString &start);

    QFuture<std::optional<QString>> future() const { return m_answer.future(); }
    Q_INVOKABLE void take(const QUrl &folder); // a local one, or none
    Q_INVOKABLE void leave();

private:
    const QString m_title;
    const QUrl m_start;
    OneShot<std::optional<QString>> m_answer{nullptr};
};

// The desktop's own dialog for folders, in front of the window that the user is in, and gone with that; one at a time.
class FolderDialogPanel final : public FolderPanel {
public:
    FolderDialogPanel();
    // What is still open chooses nothing.
    ~FolderDialogPanel() override;
    Q_DISABLE_COPY_MOVE(FolderDialogPanel)

    // A dialog that is open already gives way.
    QFuture<std::optional<QString>> choose(const QString &title, const QString &start) override;

private:
    // Ends what is open: nothing was chosen.
    void end();

    std::unique_ptr<QQmlEngine> m_engine; // from the first choice
    std::unique_ptr<FolderChoice> m_choice;
    std::unique_ptr<QObject> m_dialog; // goes before what it shows
    QMetaObject::Connection m_windowHides;
};

} // namespace zelk
