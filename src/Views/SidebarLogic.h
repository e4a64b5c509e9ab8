#pragma once

#include "App/AppModel.h"
#include "Views/SidebarModel.h"
#include "Views/TypeAhead.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <qqmlregistration.h>

namespace zelk {

// What the sidebar shows for the library and the filter, and what the user's gestures do to the selection.
class SidebarLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(Face face READ face NOTIFY faceChanged)
    Q_PROPERTY(QString failure READ failure NOTIFY faceChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(zelk::SidebarModel *playlists READ playlists CONSTANT)

public:
    // Waiting is before there is a library at all.
    enum Face { Waiting, Failed, Loading, Empty, List };
    Q_ENUM(Face)

    SidebarLogic(AppModel &model, std::shared_ptr<Clock> clock, QObject *parent = nullptr);

    Face face() const { return m_face; }
    QString failure() const { return m_failure; }
    QString searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    SidebarModel *playlists() { return &m_playlists; }
    bool isExpanded(const QString &id) const;

    // A click on a row: alone it selects just that row, with Ctrl it adds or takes it, with Shift it selects from the
    // row that was clicked last.
    Q_INVOKABLE void press(int index, int modifiers);
    // The keyboard has come to a row: as press(), but Ctrl moves without selecting.
    Q_INVOKABLE void moved(int index, int modifiers);
    Q_INVOKABLE void selectAll();
    // The keyboard's way into a row: opens a closed folder. The row to go to instead, the first in an open one, or -1.
    Q_INVOKABLE int enter(int index);
    // The keyboard's way out: closes an open folder. The row to go to instead, the folder around that row, or -1.
    Q_INVOKABLE int leave(int index);
    // The row whose name begins as somebody types, next after `from`; -1 for none.
    Q_INVOKABLE int find(const QString &typed, int from);
    Q_INVOKABLE void toggleExpansion(int index);
    Q_INVOKABLE void setExpanded(int index, bool expanded);
    Q_INVOKABLE void refresh();
    // Opens the setup for whoever has nothing connected yet.
    Q_INVOKABLE void openSetup();

Q_SIGNALS:
    void faceChanged();
    void searchTextChanged();

private:
    void attach();
    void updateFace();
    void rebuild();
    void selectionChanged();

    AppModel &m_model;
    QPointer<LibraryStore> m_library;
    SidebarModel m_playlists;
    Face m_face = Waiting;
    QString m_failure;
    QString m_searchText;
    TypeAhead m_typeAhead;
    bool m_isReplacing = false;
    QSet<QString> m_manualExpansion;
    QString m_anchor; // where a selection by Shift begins
};

} // namespace zelk
