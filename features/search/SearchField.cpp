#include "SearchField.h"

#include "DragFilesHereView.h"
#include "PasteboardURLs.h"

#include <QDragEnterEvent>
#include <QKeyEvent>

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
    // File managers offer the address of a file as a text too.
    if (offersFile(event->mimeData(), DragFilesHereView::fileURLType()))
        return event->ignore();
    QLineEdit::dragEnterEvent(event);
}
