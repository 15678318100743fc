#pragma once
#include "ImageView.h"

/// Shows its image scaled to fill its frame, cropping the overflow, by setting a new layer for each image.
/// The image cannot be read back. Placed by scenes. Main thread only.
class AspectFillImageView final : public ImageView
{
    Q_OBJECT

public:
    using ImageView::ImageView;

    /// Always none.
    std::optional<ui::Image> image() const override;
    void setImage(const std::optional<ui::Image> &image) override;
};
