#pragma once

#include "Support/Task.h"
#include "Transport/HelperProtocolCatalogue.h"

#include <QImage>
#include <QQuickItem>
#include <qqmlregistration.h>

namespace zelk {

// What the views hand on and only C++ looks into.
struct ForeignArtworkRef {
    Q_GADGET
    QML_ANONYMOUS
    QML_FOREIGN(zelk::ArtworkRef)
};

// Draws a cover once the process's provider has it, and nothing until then. What is in the provider's memory shows at
// once; anything else is loaded for as long as somebody can see this and it stands for the same cover.
class ArtworkPicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(zelk::ArtworkRef ref READ ref WRITE setRef NOTIFY refChanged)
    Q_PROPERTY(int size READ edge WRITE setEdge NOTIFY edgeChanged)                                 // points
    Q_PROPERTY(int cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged) // points
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY hasImageChanged)

public:
    explicit ArtworkPicture(QQuickItem *parent = nullptr);
    ~ArtworkPicture() override;

    ArtworkRef ref() const { return m_key.ref; }
    void setRef(const ArtworkRef &ref);
    int edge() const { return m_key.size; }
    void setEdge(int edge);
    int cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(int radius);
    bool hasImage() const { return !m_image.isNull(); }
    // The cover as it was loaded; null while there is none.
    QImage image() const { return m_image; }

Q_SIGNALS:
    void refChanged();
    void edgeChanged();
    void cornerRadiusChanged();
    void hasImageChanged();

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *) override;

private:
    // The identity of a loading task.
    struct TaskKey {
        ArtworkRef ref;
        int size = 0;
        bool operator==(const TaskKey &) const = default;
    };

    void restart();
    void setImage(const QImage &image);
    void redraw();

    TaskKey m_key;
    int m_cornerRadius = 0;
    QImage m_image;
    QImage m_face; // as it is drawn
    bool m_isFaceNew = false;
    TaskHandle m_task;
};

} // namespace zelk
