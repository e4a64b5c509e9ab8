#include "Views/Settings/OutputLogic.h"

#include "Support/TildePath.h"

#include <QCoroFuture>
#include <QFileInfo>

#include <utility>

namespace zelk {

OutputLogic::OutputLogic(AppModel &model, std::shared_ptr<FolderPanel> folders, QObject *parent)
    : SettingsTabLogic(model, parent), m_folders(std::move(folders)) {
    connect(this, &OutputLogic::configChanged, this, &OutputLogic::look);
}

QString OutputLogic::outputDir() const {
    return hasConfig() ? config()->outputDir.value_or(QString()) : QString();
}

void OutputLogic::look() {
    const QString path = outputDir();
    const bool writable = !path.isEmpty() && QFileInfo(expandedTilde(path)).isWritable();
    if (std::exchange(m_writable, writable) != writable)
        Q_EMIT writableChanged();
}

void OutputLogic::chooseFolder() {
    startTask(this, [self = QPointer(this)](std::stop_token) -> QCoro::Task<> {
        const auto choosing = self->m_folders->choose(tr("Download Folder"), self->outputDir());
        const auto chosen = co_await choosing;
        if (!self || !chosen)
            co_return;
        self->apply([path = *chosen] {
            ConfigPatch patch;
            patch.outputDir = path;
            return std::optional(patch);
        });
    });
}

} // namespace zelk
