#include "AspectFillImageView.h"

std::optional<ui::Image> AspectFillImageView::image() const
{
    return std::nullopt;
}

void AspectFillImageView::setImage(const std::optional<ui::Image> &image)
{
    setLayer(std::make_unique<ui::Layer>());
    layer()->setContentsGravity(ContentsGravity::ResizeAspectFill);
    layer()->setContents(image);
    setWantsLayer(true);
}
