#pragma once
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <memory>

/// Owns a controller's view during the controller's life. A parent would delete its child view; the keeper
/// takes the view back just before. Main thread only.
class ViewKeeper final : public QObject
{
    Q_OBJECT

public:
    explicit ViewKeeper(std::unique_ptr<QWidget> view);
    ~ViewKeeper() override;

    /// The view; null when other code deleted it.
    QWidget *view() const { return m_view; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchParent();
    void takeBack();

    QPointer<QWidget> m_view;
    QMetaObject::Connection m_parentGoes;
};
