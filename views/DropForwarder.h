#pragma once
#include <QObject>
#include <QPointer>

class DragFilesHereView;
class DropOutline;
class QWidget;

/// Hands the drags over one view to the drop target that it covers, and outlines that view meanwhile. A child
/// of the view; harmless once the drop target is gone. Main thread only.
class DropForwarder final : public QObject
{
    Q_OBJECT

public:
    DropForwarder(DragFilesHereView &target, QWidget &from);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showOutline(bool shown);

    QPointer<DragFilesHereView> m_target;
    QWidget &m_from;
    QWidget &m_surface; // of a scroll area its viewport, where the events arrive
    DropOutline *m_outline;
};
