#pragma once
#include <QWidget>

/// Draws the outline of a drop target around `bounds`, in the selection's colour.
void drawDropOutline(QPainter &painter, const QRect &bounds, const QPalette &palette);

/// Draws that outline over a view that cannot draw it itself. Takes no input.
class DropOutline final : public QWidget
{
    Q_OBJECT

public:
    explicit DropOutline(QWidget *parent);

    /// Shows it over the whole parent.
    void setShown(bool shown);

protected:
    void paintEvent(QPaintEvent *event) override;
};
