#pragma once
#include <QWidget>

class LayoutConstraint;

/// Lays out its child named by `panelName` along its bottom edge, moved by `bottomConstraint` (0 shown, minus
/// its height hidden), over its other children, which each fill the whole view or keep the geometry of their
/// scene when their dynamic property `keepsTop` is set (their width then follows the view, with the same
/// margin on both sides). A panel that is wholly below the edge is hidden: it takes no focus and is not read
/// out. Main thread only.
class BottomPanelView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString panelName READ panelName WRITE setPanelName)
    Q_PROPERTY(int panelHeight READ panelHeight WRITE setPanelHeight)

public:
    explicit BottomPanelView(QWidget *parent = nullptr);
    LayoutConstraint *bottomConstraint() const { return m_constraint; }
    QString panelName() const { return m_panelName; }
    void setPanelName(const QString &name);
    int panelHeight() const { return m_panelHeight; }
    void setPanelHeight(int points);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void childEvent(QChildEvent *event) override;

private:
    bool isPanel(const QWidget &child) const;
    void raisePanel();
    void layOut();
    void layOutPanel(QWidget &panel);

    LayoutConstraint *m_constraint;
    QString m_panelName;
    int m_panelHeight = 0;
};
