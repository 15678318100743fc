#include "SearchScenes.h"

#include "MainViewController.h"
#include "SubtitleCellView.h"

#include <ui/scenes/Storyboard.h>

void registerSearchScenes()
{
    const auto main = QStringLiteral("Main");
    Storyboard::registerController(main, QStringLiteral("MainViewController"),
                                   [] { return ViewController::make<MainViewController>(); });
    Storyboard::registerCell(main, QStringLiteral("SubtitleCellID"),
                             [] { return SubtitleCellView::fromScene(); });
}
