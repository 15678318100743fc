#pragma once
#include <QWidget>

/// Outlines `bounds` in the selection's colour, as a place that would take the drag over it.
void drawDropOutline(QPainter &painter, const QRect &bounds, const QPalette &palette);

/// That outline over a view that cannot draw it itself. Takes no input.
class DropOutline final : public QWidget
{
    Q_OBJECT

public:
    explicit DropOutline(QWidget *parent);

    /// Shows it around what of the parent can be seen: of a scroll area beside its insets.
    void setShown(bool shown);

protected:
    void paintEvent(QPaintEvent *event) override;
};
