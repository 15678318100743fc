#pragma once
#include <QApplication>
#include <QEvent>
#include <QMessageBox>
#include <QObject>
#include <functional>

/// Stands in for the person before an alert: each time one is shown, does what the test says, one turn later.
class AlertAnswerer final : public QObject
{
public:
    explicit AlertAnswerer(std::function<void(QMessageBox &)> answer) : m_answer(std::move(answer))
    {
        qApp->installEventFilter(this);
    }

    int alertsSeen() const { return m_alertsSeen; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *alert = qobject_cast<QMessageBox *>(watched);
        if (alert && event->type() == QEvent::Show) {
            ++m_alertsSeen;
            QMetaObject::invokeMethod(
                alert, [this, alert] { m_answer(*alert); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    std::function<void(QMessageBox &)> m_answer;
    int m_alertsSeen = 0;
};
