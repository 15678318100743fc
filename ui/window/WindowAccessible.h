#pragma once
#include <QAccessibleWidget>

/// What assistive tools see of a window: a window of its title, without the widgets that only draw or resize
/// its frame.
class WindowAccessible final : public QAccessibleWidget
{
public:
    /// Makes assistive tools see every Window this way. Does nothing the second time.
    static void install();

    explicit WindowAccessible(QWidget *window);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    QList<QWidget *> children() const;
};
