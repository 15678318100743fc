#pragma once
#include <QLineEdit>

/// The search field, with room at both ends for the buttons that its scene puts over it. It accepts dragged
/// text; the window takes dragged files and searches for them. Main thread only.
class SearchField final : public QLineEdit
{
    Q_OBJECT

public:
    explicit SearchField(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The Down key was pressed, to move the focus below the field.
    void leftDownwards();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
};
