#pragma once
#include <QWidget>

/// The room around the results table, which keeps clear of what lies over its edges.
class ScrollView final : public QWidget
{
    Q_OBJECT

public:
    explicit ScrollView(QWidget *parent = nullptr);

    /// The distance from each edge to the table, in points.
    QMargins contentInsets() const { return contentsMargins(); }
    void setContentInsets(const QMargins &insets) { setContentsMargins(insets); }
};
