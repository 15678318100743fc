#include "ImageFade.h"

#include "ImageView.h"

using namespace std::chrono_literals;

namespace
{
constexpr auto FadeDuration = 250ms;
} // namespace

void setImageWithFade(ImageView &view, const std::optional<ui::Image> &image)
{
    const Transition transition{Transition::Type::Fade, FadeDuration, TimingFunction::EaseInEaseOut};
    view.setWantsLayer(true);
    if (ui::Layer *layer = view.layer())
        layer->addAnimation(transition, QLatin1String(ui::Layer::TransitionKey));
    view.setImage(image);
}
