#pragma once
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

/// Owns a controller's view for as long as the controller lives, whoever shows it. A view that is somebody's
/// child would die with its parent: the keeper takes it back at the last moment. Main thread only.
class ViewKeeper final : public QObject
{
    Q_OBJECT

public:
    explicit ViewKeeper(std::unique_ptr<QWidget> view);
    ~ViewKeeper() override;

    /// The view; nothing when somebody deleted it outright.
    QWidget *view() const { return m_view; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchParent();
    void takeBack();

    QPointer<QWidget> m_view;
    QMetaObject::Connection m_parentGoes;
};
