#pragma once
#include <QProgressBar>

/// A progress bar as a thin rounded line, in the accent colour, without text.
class ProgressLine final : public QProgressBar
{
    Q_OBJECT

public:
    explicit ProgressLine(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
