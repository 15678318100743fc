#pragma once
#include <QAccessibleWidget>

/// The accessible object of a window: a window of its title, without the widgets that only draw or resize its
/// frame.
class WindowAccessible final : public QAccessibleWidget
{
public:
    /// Registers this interface for every Window. Later calls do nothing.
    static void install();

    explicit WindowAccessible(QWidget *window);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    QList<QWidget *> children() const;
};
