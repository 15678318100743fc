#pragma once
#include <ui/controls/TableCellView.h>
#include <QPointer>
#include <memory>

namespace ui
{
class Label;
}

/// A result's row: format icon, file name, details. The table's delegate fills it.
class SubtitleCellView final : public TableCellView
{
    Q_OBJECT

public:
    explicit SubtitleCellView(QWidget *parent = nullptr);
    ~SubtitleCellView() override;

    /// The cell laid out by its scene.
    static std::unique_ptr<SubtitleCellView> fromScene();

    QPointer<ImageView> posterImageView; // takes part in the layout only; the list does not fill it
    QPointer<ui::Label> titleTextField;
    QPointer<ui::Label> subtitleTextField;
};
