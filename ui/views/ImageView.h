#pragma once
#include "Layer.h"
#include <QWidget>
#include <memory>
#include <optional>

/// Shows one image. Its size does not depend on the image, so that changing it causes no layout. Layer-backed
/// views (`setWantsLayer`) draw through their layer: rounded corners, fades.
class ImageView : public QWidget
{
    Q_OBJECT
    /// How the image fills the view; a scene's choice. It is the gravity of the view's own layers.
    Q_PROPERTY(bool aspectFill READ isAspectFill WRITE setAspectFill)

public:
    explicit ImageView(QWidget *parent = nullptr);
    ~ImageView() override;

    virtual std::optional<ui::Image> image() const;
    virtual void setImage(const std::optional<ui::Image> &image);

    bool isAspectFill() const { return m_aspectFill; }
    void setAspectFill(bool fill);

    bool wantsLayer() const { return m_wantsLayer; }
    /// Makes the view layer-backed; creates a layer with its image unless one was set before.
    void setWantsLayer(bool wants);
    ui::Layer *layer() const { return m_layer.get(); }
    void setLayer(std::unique_ptr<ui::Layer> layer);
    /// Whether subviews should draw into the view's layer. Here they share one surface in any case.
    bool canDrawSubviewsIntoLayer() const { return m_canDrawSubviewsIntoLayer; }
    void setCanDrawSubviewsIntoLayer(bool can);

    /// Draws what the view shows into `rect`, for a table's cell.
    void draw(QPainter &painter, const QRectF &rect) const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ContentsGravity ownGravity() const;

    std::optional<ui::Image> m_image;
    std::unique_ptr<ui::Layer> m_layer;
    bool m_layerIsOwn = false; // created here, not set
    bool m_wantsLayer = false;
    bool m_aspectFill = false;
    bool m_canDrawSubviewsIntoLayer = false;
};
