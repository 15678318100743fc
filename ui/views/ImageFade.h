#pragma once
#include "Image.h"
#include <optional>

class ImageView;

/// Shows `image`, or none, in place of the view's image with a cross-fade of a quarter of a second. Main
/// thread only.
void setImageWithFade(ImageView &view, const std::optional<ui::Image> &image);
