#include "ImageView.h"
#include "Animator.h"

#include <QPainter>

ImageView::ImageView(QWidget *parent) : QWidget(parent) {}

ImageView::~ImageView() = default;

void ImageView::setImage(const std::optional<ui::Image> &image)
{
    m_image = image;
    if (m_layer)
        m_layer->setContents(image);
    update();
}

void ImageView::setImageWithFade(const std::optional<ui::Image> &image)
{
    setWantsLayer(true);
    m_layer->setTransition(Animator::DefaultDuration);
    setImage(image);
}

void ImageView::setAspectFill(bool fill)
{
    m_aspectFill = fill;
    if (m_layerIsOwn)
        m_layer->setContentsGravity(ownGravity());
    update();
}

void ImageView::setWantsLayer(bool wants)
{
    m_wantsLayer = wants;
    if (wants && !m_layer) {
        auto layer = std::make_unique<ui::Layer>();
        layer->setContentsGravity(ownGravity());
        layer->setContents(m_image);
        setLayer(std::move(layer));
        m_layerIsOwn = true;
    }
    update();
}

void ImageView::setLayer(std::unique_ptr<ui::Layer> layer)
{
    m_layer = std::move(layer);
    m_layerIsOwn = false;
    if (m_layer)
        connect(m_layer.get(), &ui::Layer::needsDisplay, this, qOverload<>(&QWidget::update));
    update();
}

void ImageView::draw(QPainter &painter, const QRectF &rect) const
{
    if (m_wantsLayer && m_layer)
        return m_layer->draw(painter, rect);
    if (!m_image)
        return;
    // Without a layer a picture is scaled down to fit, but never up.
    const QSizeF size = m_image->size();
    const bool fits = size.width() <= rect.width() && size.height() <= rect.height();
    const auto gravity = m_aspectFill ? ContentsGravity::ResizeAspectFill
                         : fits       ? ContentsGravity::Center
                                      : ContentsGravity::ResizeAspect;
    m_image->draw(painter, rect, gravity);
}

void ImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    draw(painter, rect());
}

ContentsGravity ImageView::ownGravity() const
{
    return m_aspectFill ? ContentsGravity::ResizeAspectFill : ContentsGravity::ResizeAspect;
}

void AspectFillImageView::setImage(const std::optional<ui::Image> &image)
{
    setLayer(std::make_unique<ui::Layer>());
    layer()->setContentsGravity(ContentsGravity::ResizeAspectFill);
    layer()->setContents(image);
    setWantsLayer(true);
}
