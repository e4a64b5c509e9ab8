#pragma once

#include "App/AppModel.h"
#include "Platform/FileBrowser.h"
#include "Views/FrameTick.h"

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <qqmlregistration.h>

#include <functional>

namespace zelk {

// What the menu bar and the toolbar offer, and when.
class CommandsLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool running READ running NOTIFY phaseChanged)
    Q_PROPERTY(bool canSync READ canSync NOTIFY phaseChanged)
    Q_PROPERTY(bool canReview READ canReview NOTIFY reviewCountChanged)
    Q_PROPERTY(bool canOpenSettings READ canOpenSettings CONSTANT)
    Q_PROPERTY(QString reviewText READ reviewText NOTIFY reviewCountChanged)
    // Whether a sync would find a playlist; the toolbar's button asks for that, the menu's entry doesn't.
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectionChanged)

public:
    // What its commands do outside of the model.
    struct Outside {
        std::shared_ptr<FileBrowser> files;
        std::function<void(const QUrl &url)> openUrl; // in the user's browser
        std::function<void()> checkForUpdates;
        std::function<void()> openAbout{};    // says what this application is
        std::function<void()> openSettings{}; // without it there are none to open
    };

    CommandsLogic(AppModel &model, Outside outside, QObject *parent = nullptr);

    bool running() const { return m_model.sync()->isRunning(); }
    bool canSync() const { return !running(); }
    bool canReview() const { return m_reviewCount > 0; }
    bool canOpenSettings() const { return static_cast<bool>(m_outside.openSettings); }
    QString reviewText() const; // "2 reviews"
    bool hasSelection() const { return m_hasSelection; }

    Q_INVOKABLE void sync() { m_model.startSync(); }
    Q_INVOKABLE void cancel() { m_model.cancelSync(); }
    Q_INVOKABLE void openReview() { m_model.openReview(); }
    Q_INVOKABLE void refreshLibrary();
    // Shows the folder that the engine writes to; nothing without one.
    Q_INVOKABLE void revealOutput();
    Q_INVOKABLE void openHelp();
    Q_INVOKABLE void checkForUpdates() { m_outside.checkForUpdates(); }
    Q_INVOKABLE void openAbout() { m_outside.openAbout(); }
    Q_INVOKABLE void openSettings() { m_outside.openSettings(); }

Q_SIGNALS:
    void phaseChanged();
    void reviewCountChanged();
    void selectionChanged();

private:
    void attach();
    void countReviews();
    void followSelection();

    AppModel &m_model;
    const Outside m_outside;
    QPointer<LibraryStore> m_library;
    int m_reviewCount = 0;
    bool m_hasSelection = false;
    FrameTick m_tick;
};

} // namespace zelk
