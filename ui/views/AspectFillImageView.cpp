#include "AspectFillImageView.h"

std::optional<Image> AspectFillImageView::image() const
{
    return std::nullopt;
}

void AspectFillImageView::setImage(const std::optional<Image> &image)
{
    setLayer(std::make_unique<Layer>());
    layer()->setContentsGravity(ContentsGravity::ResizeAspectFill);
    layer()->setContents(image);
    setWantsLayer(true);
}
