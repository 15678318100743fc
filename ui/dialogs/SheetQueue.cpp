#include "SheetQueue.h"

#include <QWidget>

SheetQueue::SheetQueue(QWidget &window) : QObject(&window) {}

SheetQueue &SheetQueue::of(QWidget &window)
{
    auto *queue = window.findChild<SheetQueue *>(QString(), Qt::FindDirectChildrenOnly);
    return queue ? *queue : *new SheetQueue(window);
}

void SheetQueue::add(Factory makeSheet)
{
    m_waiting.push_back(std::move(makeSheet));
    showNext();
}

void SheetQueue::end(QDialog *sheet)
{
    sheet->deleteLater();
    if (sheet != m_current)
        return;
    m_current = nullptr;
    showNext();
}

void SheetQueue::showNext()
{
    if (m_current || m_waiting.empty())
        return;
    const Factory makeSheet = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_current = makeSheet();
    m_current->open();
}
