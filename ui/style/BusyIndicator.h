#pragma once
#include <QBasicTimer>
#include <QWidget>

/// A wheel that turns while it is visible. It stops while it is hidden and with reduced motion.
class BusyIndicator : public QWidget
{
    Q_OBJECT

public:
    explicit BusyIndicator(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    bool isSpinning() const { return m_timer.isActive(); }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void followMotionSetting();

    QBasicTimer m_timer;
    int m_step = 0;
};
