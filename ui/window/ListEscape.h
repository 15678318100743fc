#pragma once
#include <QObject>

class QComboBox;

/// Makes Escape close only the open list of a combo box: the toolkit would then also run the window's
/// shortcut for the key. A child of the combo box. Main thread only.
class ListEscape final : public QObject
{
    Q_OBJECT

public:
    explicit ListEscape(QComboBox &comboBox);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
