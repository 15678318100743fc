#pragma once
#include <QList>
#include <QWidget>

class ImageView;
namespace ui
{
class Label;
}

/// A table cell made from a scene and reused for every row: the delegate fills it and the table draws it. It
/// is never shown as a widget: its labels and image views are laid out once for a size and then drawn row by
/// row. Other widgets of the scene only take part in the layout. Main thread only.
class TableCellView : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// The view of the format icon in the scene: the outlet of the base class.
    ImageView *imageView() const { return m_imageView; }
    void setImageView(ImageView *imageView) { m_imageView = imageView; }

    /// Draws the cell's labels and images, laid out for `rect`.
    void draw(QPainter &painter, const QRect &rect);

protected:
    bool event(QEvent *event) override;

private:
    struct Part
    {
        QWidget *widget = nullptr;
        ui::Label *label = nullptr;     // or else
        ImageView *imageView = nullptr; // set when there is no label
        QRect geometry;                 // in the cell
    };

    void layOut(const QSize &size);

    ImageView *m_imageView = nullptr;
    QSize m_laidOutSize; // invalid when the parts must be laid out anew
    QList<Part> m_parts;
};
