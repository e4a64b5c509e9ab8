#include "Views/FolderDialogPanel.h"

#include "Support/TildePath.h"
#include "Views/ViewEngine.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace zelk {

namespace {

// A window of our own that the user sees, the one they are in before any other.
QWindow *front() {
    if (QWindow *const focused = QGuiApplication::focusWindow())
        return focused;
    const auto windows = QGuiApplication::topLevelWindows();
    const auto found = std::ranges::find_if(windows, &QWindow::isVisible);
    return found == windows.end() ? nullptr : *found;
}

QUrl folderUrl(const QString &path) {
    const QString whole = expandedTilde(path);
    return QUrl::fromLocalFile(QFileInfo(whole).isDir() ? whole : QDir::homePath());
}

} // namespace

FolderChoice::FolderChoice(QString title, const QString &start)
    : m_title(std::move(title)), m_start(folderUrl(start)) {}

void FolderChoice::take(const QUrl &folder) {
    const QString path = folder.toLocalFile();
    m_answer.fulfil(path.isEmpty() ? std::nullopt : std::optional(path));
}

void FolderChoice::leave() {
    m_answer.fulfil(std::nullopt);
}

FolderDialogPanel::FolderDialogPanel() = default;

FolderDialogPanel::~FolderDialogPanel() {
    end();
}

void FolderDialogPanel::end() {
    QObject::disconnect(m_windowHides);
    if (m_dialog)
        QMetaObject::invokeMethod(m_dialog.get(), "close");
    m_dialog.reset();
    if (m_choice)
        m_choice->leave();
}

QFuture<std::optional<QString>> FolderDialogPanel::choose(const QString &title, const QString &start) {
    end();
    m_choice = std::make_unique<FolderChoice>(title, start);
    const auto answer = m_choice->future();
    if (!m_engine) {
        m_engine = std::make_unique<QQmlEngine>();
        prepareViewEngine(*m_engine);
    }
    QQmlComponent component(m_engine.get(), viewUrl(u"FolderChooser"_s));
    QWindow *const window = front();
    // 6.4 looks into a component that failed to load.
    if (component.isReady())
        m_dialog.reset(component.createWithInitialProperties(
            {{u"choice"_s, QVariant::fromValue(m_choice.get())}, {u"parentWindow"_s, QVariant::fromValue(window)}}));
    if (m_dialog) {
        QMetaObject::invokeMethod(m_dialog.get(), "open");
        if (window)
            m_windowHides = QObject::connect(window, &QWindow::visibleChanged, m_dialog.get(), [this](bool visible) {
                if (!visible)
                    end();
            });
    } else {
        qWarning("%s", qUtf8Printable(component.errorString()));
        m_choice->leave();
    }
    return answer;
}

} // namespace zelk
