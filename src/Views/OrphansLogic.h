#pragma once

#include "App/AppModel.h"
#include "Platform/FileBrowser.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <qqmlregistration.h>

namespace zelk {

// The strip about files that have fallen out of the playlists. While it leaves, it keeps what it said.
class OrphansLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(bool expanded READ expanded NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    // The names of the first files, which the expanded strip lists.
    Q_PROPERTY(QStringList names READ names NOTIFY changed)
    // How many files are not listed; empty when all are.
    Q_PROPERTY(QString more READ more NOTIFY changed)

public:
    OrphansLogic(AppModel &model, std::shared_ptr<FileBrowser> files, QObject *parent = nullptr);

    bool shown() const { return m_shown; }
    bool expanded() const { return m_expanded; }
    QString message() const;
    QStringList names() const;
    QString more() const;

    Q_INVOKABLE void toggle();
    Q_INVOKABLE void keep();
    // All files, those too that aren't listed.
    Q_INVOKABLE void moveToTrash();
    // Shows a listed file in the desktop's file browser.
    Q_INVOKABLE void reveal(int index);

Q_SIGNALS:
    void changed();

private:
    void attach();
    void follow();

    AppModel &m_model;
    const std::shared_ptr<FileBrowser> m_files;
    QPointer<OrphansStore> m_orphans;
    QStringList m_paths;
    bool m_shown = false;
    bool m_expanded = false;
};

} // namespace zelk
