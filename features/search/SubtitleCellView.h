#pragma once
#include <ui/controls/TableCellView.h>
#include <QPointer>
#include <memory>

class Label;

/// A result's row: format icon, file name, details. Filled by the table's delegate; no behaviour of its own.
class SubtitleCellView final : public TableCellView
{
    Q_OBJECT

public:
    explicit SubtitleCellView(QWidget *parent = nullptr);
    ~SubtitleCellView() override;

    /// The cell laid out by its scene.
    static std::unique_ptr<SubtitleCellView> fromScene();

    QPointer<ImageView> posterImageView; // declared for the layout; the list does not fill it
    QPointer<Label> titleTextField;
    QPointer<Label> subtitleTextField;
};
