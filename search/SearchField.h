#pragma once
#include <QLineEdit>

/// The search text's field, with room at both ends for the buttons that its scene lays over it.
class SearchField final : public QLineEdit
{
    Q_OBJECT

public:
    explicit SearchField(QWidget *parent = nullptr);
};
