#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantList>
#include <qqmlregistration.h>

#include <utility>

namespace zelk {

// A tab of the settings, and what its view shows.
struct SettingsTab {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QUrl view MEMBER view CONSTANT)
    Q_PROPERTY(QObject *logic MEMBER logic CONSTANT)

public:
    QString label;
    QString symbol;
    QUrl view;
    QObject *logic = nullptr;
};

// The tabs of the settings, of which one is in view.
class SettingsLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT) // SettingsTabs
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY currentChanged)

public:
    explicit SettingsLogic(QList<SettingsTab> tabs) : m_tabs(std::move(tabs)) {}

    QVariantList tabs() const;
    int current() const { return m_current; }
    // A place that isn't there changes nothing.
    void setCurrent(int index);
    // To the tab that many places on, round the ends.
    Q_INVOKABLE void step(int places);

Q_SIGNALS:
    void currentChanged();

private:
    const QList<SettingsTab> m_tabs;
    int m_current = 0;
};

} // namespace zelk
