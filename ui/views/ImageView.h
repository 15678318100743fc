#pragma once
#include "Layer.h"
#include <QWidget>

/// Shows one image. Its size does not depend on the image, so that changing it causes no layout. Layer-backed
/// views (`setWantsLayer`) draw through their layer: rounded corners, fades. Main thread only.
class ImageView : public QWidget
{
    Q_OBJECT
    /// How the image fills the view; a scene's choice. It is the gravity of the view's own layers.
    Q_PROPERTY(bool aspectFill READ isAspectFill WRITE setAspectFill)

public:
    explicit ImageView(QWidget *parent = nullptr);
    ~ImageView() override;

    virtual std::optional<ui::Image> image() const { return m_image; }
    virtual void setImage(const std::optional<ui::Image> &image);
    /// Makes the view layer-backed and shows `image`, or none, with a cross-fade of a quarter of a second.
    void setImageWithFade(const std::optional<ui::Image> &image);

    bool isAspectFill() const { return m_aspectFill; }
    void setAspectFill(bool fill);

    bool wantsLayer() const { return m_wantsLayer; }
    /// Makes the view layer-backed; creates a layer with its image unless one was set before.
    void setWantsLayer(bool wants);
    ui::Layer *layer() const { return m_layer.get(); }
    void setLayer(std::unique_ptr<ui::Layer> layer);

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
};

/// Shows its image scaled to fill its frame, cropping the overflow, by setting a new layer for each image.
/// The image cannot be read back. Placed by scenes. Main thread only.
class AspectFillImageView final : public ImageView
{
    Q_OBJECT

public:
    using ImageView::ImageView;

    /// Always none.
    std::optional<ui::Image> image() const override { return std::nullopt; }
    void setImage(const std::optional<ui::Image> &image) override;
};
