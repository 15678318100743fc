#pragma once
#include <QWidget>

/// The container of the results table, which leaves room for what covers its edges.
class ScrollView final : public QWidget
{
    Q_OBJECT

public:
    explicit ScrollView(QWidget *parent = nullptr);

    /// The distance from each edge to the table, in points.
    QMargins contentInsets() const { return contentsMargins(); }
    void setContentInsets(const QMargins &insets) { setContentsMargins(insets); }
};
