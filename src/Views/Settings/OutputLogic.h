#pragma once

#include "Platform/FolderPanel.h"
#include "Views/Settings/SettingsTabLogic.h"

#include <memory>

namespace zelk {

// The tab of where the files go.
class OutputLogic : public zelk::SettingsTabLogic {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QString outputDir READ outputDir NOTIFY configChanged) // as the engine has it; empty when not set
    // Whether that folder is there and can be written to, as far as `look` has seen.
    Q_PROPERTY(bool writable READ writable NOTIFY writableChanged)

public:
    OutputLogic(AppModel &model, std::shared_ptr<FolderPanel> folders, QObject *parent = nullptr);

    QString outputDir() const;
    bool writable() const { return m_writable; }

    // To be called when the tab shows: the folder may have come or gone.
    Q_INVOKABLE void look();
    Q_INVOKABLE void chooseFolder();

Q_SIGNALS:
    void writableChanged();

private:
    const std::shared_ptr<FolderPanel> m_folders;
    bool m_writable = false;
};

} // namespace zelk
