#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QUrl>
#include <qqmlregistration.h>

#include <functional>
#include <memory>

namespace zelk {

class DialogHost;

// What the dialog says of this copy, and what its buttons do.
class AboutLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its dialog")
    Q_PROPERTY(QString version READ version CONSTANT)

public:
    QString version() const; // "Version 1.2.0"

Q_SIGNALS:
    void websiteRequested();
    void closed();
};

// The window that says what this application is.
class AboutDialog {
public:
    // `host` must outlive it.
    AboutDialog(DialogHost &host, std::function<void(const QUrl &url)> openUrl);
    Q_DISABLE_COPY_MOVE(AboutDialog)

    void open();

private:
    DialogHost &m_host;
    AboutLogic m_logic;
    std::unique_ptr<QQuickWindow> m_window; // from the first opening; last: it goes before what it shows
};

} // namespace zelk
