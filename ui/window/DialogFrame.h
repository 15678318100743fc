#pragma once
#include <QObject>

class DrawnFrame;
class QDialog;

/// Gives a stock dialog the frame of the program's own windows, with a close button alone. A child of the
/// dialog. Main thread only.
class DialogFrame final : public QObject
{
    Q_OBJECT

public:
    /// Call before the dialog is shown and after its controls exist, because the close button comes last in
    /// the Tab order.
    static void putAround(QDialog &dialog);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit DialogFrame(QDialog &dialog);

    void setContentsMargins();
    void keepContentSize();
    void correctPosition();

    QDialog &m_dialog;
    DrawnFrame *m_frame;
};
