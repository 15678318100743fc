#pragma once
#include <QDialog>
#include <QObject>
#include <QPointer>
#include <deque>
#include <functional>

/// The sheets of one window, shown one after the other. Destroyed with its window; waiting sheets are then
/// never made. Main thread only.
class SheetQueue final : public QObject
{
    Q_OBJECT

public:
    using Factory = std::function<QDialog *()>;

    /// The queue of that window, made on first use.
    static SheetQueue &of(QWidget &window);

    /// Calls `makeSheet` and opens its result (a child of the window) when no other sheet is shown.
    void add(Factory makeSheet);
    /// Removes the shown sheet and shows the next one. The sheet may be the sender.
    void end(QDialog *sheet);

private:
    explicit SheetQueue(QWidget &window);
    void showNext();

    std::deque<Factory> m_waiting;
    QPointer<QDialog> m_current;
};
