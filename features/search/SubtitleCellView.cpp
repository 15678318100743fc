#include "ui_SubtitleCellView.h"

#include "SubtitleCellView.h"

SubtitleCellView::SubtitleCellView(QWidget *parent) : TableCellView(parent) {}

SubtitleCellView::~SubtitleCellView() = default;

std::unique_ptr<SubtitleCellView> SubtitleCellView::fromScene()
{
    auto cell = std::make_unique<SubtitleCellView>();
    Ui::SubtitleCellView scene;
    scene.setupUi(cell.get());
    cell->setImageView(scene.imageView);
    cell->titleTextField = scene.titleTextField;
    cell->subtitleTextField = scene.subtitleTextField;
    cell->ensurePolished(); // it is drawn, never shown
    return cell;
}
