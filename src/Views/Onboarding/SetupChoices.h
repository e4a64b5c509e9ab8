#pragma once

#include "App/AppModel.h"
#include "Platform/FolderPanel.h"

#include <QPointer>
#include <QVariantList>
#include <qqmlregistration.h>

#include <memory>

namespace zelk {

// A source of audio that the user may turn on and off.
struct SourceChoice {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString assetName MEMBER assetName CONSTANT)
    Q_PROPERTY(QString blurb MEMBER blurb CONSTANT)
    Q_PROPERTY(bool takesKey MEMBER takesKey CONSTANT)
    Q_PROPERTY(QString keyPlaceholder MEMBER keyPlaceholder CONSTANT)
    Q_PROPERTY(bool enabled MEMBER enabled CONSTANT)

public:
    QString name, assetName, blurb;
    bool takesKey = false;
    QString keyPlaceholder;
    bool enabled = false;
};

// A choice of quality.
struct QualityChoice {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString blurb MEMBER blurb CONSTANT)
    Q_PROPERTY(bool selected MEMBER selected CONSTANT)

public:
    QString name, blurb;
    bool selected = false;
};

// What the user chooses in the setup, for as long as it is up; nothing of it reaches the engine before the end. While
// there is no setup it reads as empty, and what is written goes nowhere.
class SetupChoices : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with the window")
    Q_PROPERTY(bool identityEnabled READ identityEnabled WRITE setIdentityEnabled NOTIFY changed)
    Q_PROPERTY(bool identityStrict READ identityStrict WRITE setIdentityStrict NOTIFY changed)
    Q_PROPERTY(QString acoustidKey READ acoustidKey WRITE setAcoustidKey NOTIFY changed)
    Q_PROPERTY(QString soundcloudToken READ soundcloudToken WRITE setSoundcloudToken NOTIFY changed)
    Q_PROPERTY(QString proxySubscription READ proxySubscription WRITE setProxySubscription NOTIFY changed)
    Q_PROPERTY(QString outputDir READ outputDir NOTIFY changed)
    // SourceChoices and QualityChoices, always as many, in the order of the catalogue.
    Q_PROPERTY(QVariantList sources READ sources NOTIFY changed)
    Q_PROPERTY(QVariantList qualities READ qualities NOTIFY changed)
    // How the choices read at the end: RecapFaces, always as many.
    Q_PROPERTY(QVariantList recap READ recap NOTIFY changed)

public:
    SetupChoices(AppModel &model, std::shared_ptr<FolderPanel> folders, QObject *parent = nullptr);

    bool identityEnabled() const { return m_coordinator && m_coordinator->identityEnabled(); }
    void setIdentityEnabled(bool enabled);
    bool identityStrict() const { return m_coordinator && m_coordinator->identityStrict(); }
    void setIdentityStrict(bool strict);
    QString acoustidKey() const { return m_coordinator ? m_coordinator->acoustidKey() : QString(); }
    void setAcoustidKey(const QString &key);
    QString soundcloudToken() const { return m_coordinator ? m_coordinator->soundcloudToken() : QString(); }
    void setSoundcloudToken(const QString &token);
    QString proxySubscription() const { return m_coordinator ? m_coordinator->proxySubscription() : QString(); }
    void setProxySubscription(const QString &url);
    QString outputDir() const { return m_coordinator ? m_coordinator->outputDir() : QString(); }
    QVariantList sources() const;
    QVariantList qualities() const;
    QVariantList recap() const;

    // Turns a source on or off, which puts the sources back into the order of the catalogue.
    Q_INVOKABLE void setSourceEnabled(int index, bool enabled);
    Q_INVOKABLE void chooseQuality(int index);
    // Lets the user choose where files are saved, from the folder that holds so far on.
    Q_INVOKABLE void chooseFolder();

Q_SIGNALS:
    void changed();

private:
    void follow();
    void followSettings();

    AppModel &m_model;
    const std::shared_ptr<FolderPanel> m_folders;
    QPointer<SetupCoordinator> m_coordinator;
};

} // namespace zelk
