#pragma once
#include <QLineEdit>

/// The search text's field, with room at both ends for the buttons that its scene lays over it. It takes a
/// dragged text; dragged files and links are left to the window, which searches for a file. Main thread only.
class SearchField final : public QLineEdit
{
    Q_OBJECT

public:
    explicit SearchField(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The Down key was pressed: the person wants to go on below the field.
    void leftDownwards();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
};
