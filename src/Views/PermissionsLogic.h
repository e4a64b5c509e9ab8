#pragma once

#include "Platform/ConsentStatus.h"
#include "Styling/Tokens.h"

#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

#include <memory>
#include <optional>
#include <utility>

namespace zelk {

class MusicLibraryConsent;
class RememberedConsent;

// What is said of one permission.
struct PermissionFace {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString explanation MEMBER explanation CONSTANT)
    Q_PROPERTY(QString state MEMBER state CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(int ink READ inkIndex CONSTANT)
    Q_PROPERTY(QString action MEMBER action CONSTANT)

public:
    QString name, explanation, state, symbol;
    Ink ink = Ink::secondary;
    QString action; // what the button does: the other answer

    int inkIndex() const { return static_cast<int>(ink); }
    bool operator==(const PermissionFace &) const = default;
};

// Both have no answer while the user has given none.
PermissionFace libraryFace(std::optional<bool> answer, ConsentStatus status, const QString &libraryFile);
PermissionFace appleMusicFace(std::optional<bool> answer);

// What the application may do, with a way to change it.
class PermissionsLogic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the dialog")
    // PermissionFaces: the library's, then Apple Music's.
    Q_PROPERTY(QVariantList faces READ faces NOTIFY changed)

public:
    struct Permissions {
        std::shared_ptr<RememberedConsent> library;
        std::shared_ptr<MusicLibraryConsent> libraryStatus;
        QString libraryFile;
        std::shared_ptr<RememberedConsent> appleMusic;
    };
    explicit PermissionsLogic(Permissions permissions) : m_permissions(std::move(permissions)) {}

    QVariantList faces() const;

    // Reads again what may have changed elsewhere.
    Q_INVOKABLE void refresh() { Q_EMIT changed(); }
    // Gives the other answer to the permission at that place; what was never answered is allowed.
    Q_INVOKABLE void change(int index);
    Q_INVOKABLE void close() { Q_EMIT closed(); }

Q_SIGNALS:
    void changed();
    // The user has given an answer.
    void answered();
    void closed();

private:
    const Permissions m_permissions;
};

} // namespace zelk
