#pragma once
#include <QWidget>

/// The dashed rounded frame of the drop area; a scene fills it with the drawing and the texts. Main thread
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
