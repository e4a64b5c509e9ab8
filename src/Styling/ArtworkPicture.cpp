#include "Styling/ArtworkPicture.h"

#include "Services/ArtworkProvider.h"
#include "Styling/CoverFace.h"
#include "Transport/Tagged.h"

#include <QPointer>
#include <QQuickWindow>
#include <QSGImageNode>

namespace zelk {

ArtworkPicture::ArtworkPicture(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

ArtworkPicture::~ArtworkPicture() = default;

void ArtworkPicture::setRef(const ArtworkRef &ref) {
    if (m_key.ref == ref)
        return;
    m_key.ref = ref;
    restart();
    Q_EMIT refChanged();
}

void ArtworkPicture::setEdge(int edge) {
    if (m_key.size == edge)
        return;
    m_key.size = edge;
    restart();
    Q_EMIT edgeChanged();
}

void ArtworkPicture::setCornerRadius(int radius) {
    if (m_cornerRadius == radius)
        return;
    m_cornerRadius = radius;
    redraw();
    Q_EMIT cornerRadiusChanged();
}

void ArtworkPicture::componentComplete() {
    QQuickItem::componentComplete();
    restart();
}

void ArtworkPicture::itemChange(ItemChange change, const ItemChangeData &value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemVisibleHasChanged && !value.boolValue)
        m_task.cancel();
    else if (change == ItemVisibleHasChanged && !hasImage())
        restart();
    else if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        redraw();
}

void ArtworkPicture::restart() {
    m_task.cancel();
    if (!isComponentComplete())
        return;
    const auto provider = caseOf<ArtworkRef::None>(m_key.ref) ? nullptr : ArtworkProvider::shared();
    const QImage cached = provider ? provider->cachedImage(m_key.ref, m_key.size) : QImage();
    setImage(cached);
    if (!provider || !cached.isNull() || !isVisible())
        return;
    m_task = startTask(this, [self = QPointer(this), provider, key = m_key](std::stop_token stop) -> QCoro::Task<> {
        auto loading = provider->image(key.ref, key.size, stop);
        const QImage image = co_await loading;
        if (self && !stop.stop_requested())
            self->setImage(image);
    });
}

void ArtworkPicture::setImage(const QImage &image) {
    const bool hadImage = hasImage();
    if (!hadImage && image.isNull())
        return;
    m_image = image;
    redraw();
    if (hadImage != hasImage())
        Q_EMIT hasImageChanged();
}

void ArtworkPicture::redraw() {
    polish();
    update();
}

void ArtworkPicture::updatePolish() {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    m_face = coverFace(m_image, qRound(m_key.size * ratio), m_cornerRadius * ratio);
    m_isFaceNew = true;
    update();
}

QSGNode *ArtworkPicture::updatePaintNode(QSGNode *node, UpdatePaintNodeData *) {
    if (m_face.isNull()) {
        delete node;
        return nullptr;
    }
    auto *picture = static_cast<QSGImageNode *>(node);
    if (!picture) {
        picture = window()->createImageNode();
        picture->setOwnsTexture(true);
        picture->setFiltering(QSGTexture::Linear);
        m_isFaceNew = true;
    }
    if (std::exchange(m_isFaceNew, false)) {
        picture->setTexture(window()->createTextureFromImage(m_face, QQuickWindow::TextureHasAlphaChannel));
        picture->setSourceRect(m_face.rect());
    }
    picture->setRect(0, 0, m_key.size, m_key.size);
    return picture;
}

} // namespace zelk
