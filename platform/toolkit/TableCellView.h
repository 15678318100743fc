#pragma once
#include <QWidget>

class ImageView;

/// A table's cell, made from a scene and reused for every row: the table fills it by its delegate and draws it.
/// Never shown as a widget of its own.
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

private:
    ImageView *m_imageView = nullptr;
};
