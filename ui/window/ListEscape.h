#pragma once
#include <QObject>

class QComboBox;

/// Lets Escape close the open list of a combo box and do no more: the toolkit closes the list, and then runs
/// the window's shortcut for the key. A child of the combo box. Main thread only.
class ListEscape final : public QObject
{
    Q_OBJECT

public:
    explicit ListEscape(QComboBox &comboBox);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
