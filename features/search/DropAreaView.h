#pragma once
#include <QWidget>

/// The dashed rounded frame that invites a drop; a scene puts the drawing and the texts into it. Main thread
/// only.
class DropAreaView final : public QWidget
{
    Q_OBJECT

public:
    explicit DropAreaView(QWidget *parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
