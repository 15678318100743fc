#include "SearchField.h"

#include "DragFilesHereView.h"

#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>

namespace
{
constexpr int MagnifierWidth = 28;
constexpr int CancelButtonWidth = 30;
constexpr int LongestText = 4096; // characters; file names end at 255 bytes
} // namespace

SearchField::SearchField(QWidget *parent) : QLineEdit(parent)
{
    setTextMargins(MagnifierWidth, 0, CancelButtonWidth, 0);
    setMaxLength(LongestText);
}

void SearchField::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (event->key() != Qt::Key_Down || !isPlain)
        return QLineEdit::keyPressEvent(event);
    event->accept();
    Q_EMIT leftDownwards();
}

void SearchField::dragEnterEvent(QDragEnterEvent *event)
{
    // File managers and browsers offer the address of a file or a page as a text too.
    if (event->mimeData()->hasFormat(DragFilesHereView::fileURLType()))
        return event->ignore();
    QLineEdit::dragEnterEvent(event);
}
