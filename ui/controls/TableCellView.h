#pragma once
#include <QList>
#include <QWidget>

class ImageView;
class Label;

/// A table's cell, made from a scene and reused for every row: the table fills it by its delegate and draws
/// it. Never shown as a widget of its own: its labels and image views are laid out once for a size and then
/// drawn directly, row by row. Other widgets of the scene serve the layout alone. Main thread only.
class TableCellView : public QWidget
{
    Q_OBJECT

public:
    explicit TableCellView(QWidget *parent = nullptr);
    ~TableCellView() override;

    /// The format icon's place in the scene: the outlet of the base class.
    ImageView *imageView() const { return m_imageView; }
    void setImageView(ImageView *imageView) { m_imageView = imageView; }

    /// Draws the cell's labels and images, laid out for `rect`, in the colours for the row's state.
    virtual void draw(QPainter &painter, const QRect &rect, bool selected);

protected:
    bool event(QEvent *event) override;

private:
    struct Part
    {
        QWidget *widget = nullptr;
        Label *label = nullptr;         // or else
        ImageView *imageView = nullptr; // this one
        QRect geometry;                 // in the cell
    };

    void layOut(const QSize &size);

    ImageView *m_imageView = nullptr;
    QSize m_laidOutSize; // invalid when the parts must be laid out anew
    QList<Part> m_parts;
};
