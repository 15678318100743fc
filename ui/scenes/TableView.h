#pragma once
#include <QHash>
#include <QListView>

class TableCellView;

/// Provides the rows of a table; asked on every reload.
class TableViewDataSource
{
public:
    virtual ~TableViewDataSource() = default;
    virtual int numberOfRowsInTableView() = 0;
};

/// Fills the cells of a table and observes its selection.
class TableViewDelegate
{
public:
    virtual ~TableViewDelegate() = default;
    /// The filled cell for a row, or null for an empty row. The table draws it at once.
    virtual TableCellView *tableViewViewForRow(int row) = 0;
    /// The accessible text of a row.
    virtual QString tableViewAccessibleTextForRow(int row) = 0;
    virtual void tableViewSelectionDidChange() = 0;
};

/// A list of rows of equal height; one cell made from a scene draws every row. It shows the number of rows as
/// of its last reload. The selected row stays selected after a reload if it still exists; otherwise the
/// selection is cleared and the delegate is notified. Main thread only.
class TableView : public QListView
{
    Q_OBJECT
    Q_PROPERTY(int rowHeight READ rowHeight WRITE setRowHeight)
    Q_PROPERTY(QString cellStoryboard READ cellStoryboard WRITE setCellStoryboard)

public:
    explicit TableView(QWidget *parent = nullptr);

    void setDataSource(TableViewDataSource *dataSource) { m_dataSource = dataSource; }
    void setDelegate(TableViewDelegate *delegate) { m_delegate = delegate; }

    int rowHeight() const { return m_rowHeight; }
    void setRowHeight(int points);
    QString cellStoryboard() const { return m_cellStoryboard; }
    void setCellStoryboard(const QString &storyboard) { m_cellStoryboard = storyboard; }

    /// The reusable cell made from the scene of that identifier, or null when there is none.
    TableCellView *makeView(const QString &identifier);

    int numberOfRows() const;
    /// The first selected row, or -1.
    int selectedRow() const;
    int numberOfSelectedRows() const;
    /// Does nothing when there is no such row.
    void selectRow(int row);
    void deselectAll();
    void reloadData();
    void scrollRowToVisible(int row);

Q_SIGNALS:
    /// A row was double-clicked, or Return pressed with a row selected, also with Alt and Shift held; the
    /// receiver reads the modifiers.
    void doubleActionTriggered();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    class Model;
    class RowPainter;

    Model *m_model;
    TableViewDataSource *m_dataSource = nullptr;
    TableViewDelegate *m_delegate = nullptr;
    int m_rowHeight = 80;
    QString m_cellStoryboard;
    QHash<QString, TableCellView *> m_cells; // by identifier, children of the table
    bool m_isReloading = false;              // while the selection is carried over
};
