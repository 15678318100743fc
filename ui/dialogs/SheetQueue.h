#pragma once
#include <QDialog>
#include <QObject>
#include <QPointer>
#include <deque>
#include <functional>

/// The sheets of one window, shown one after the other. Lives and dies with its window; sheets that still
/// wait then are never made. Main thread only.
class SheetQueue final : public QObject
{
    Q_OBJECT

public:
    using Factory = std::function<QDialog *()>;

    /// The queue of that window, made on first use.
    static SheetQueue &of(QWidget &window);

    /// Calls `makeSheet` and opens what it made (a child of the window), once no other sheet is up.
    void add(Factory makeSheet);
    /// Takes away the sheet that is up and shows the next. The sheet may be the sender.
    void end(QDialog *sheet);

private:
    explicit SheetQueue(QWidget &window);
    void showNext();

    std::deque<Factory> m_waiting;
    QPointer<QDialog> m_current;
};
