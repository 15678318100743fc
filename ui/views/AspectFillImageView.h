#pragma once
#include "ImageView.h"

/// Shows its image scaled to fill its whole frame, cropping what overflows, by handing it to a new layer each
/// time. The image is kept nowhere else: it cannot be read back. Placed by scenes. Main thread only.
class AspectFillImageView final : public ImageView
{
    Q_OBJECT

public:
    using ImageView::ImageView;

    /// Always nothing.
    std::optional<Image> image() const override;
    void setImage(const std::optional<Image> &image) override;
};
