#pragma once
#include <QListView>
#include <memory>

class TableCellView;

/// What a table shows: asked on every reload.
class TableViewDataSource
{
public:
    virtual ~TableViewDataSource() = default;
    virtual int numberOfRowsInTableView() = 0;
};

/// How a table shows a row, and who hears of the selection.
class TableViewDelegate
{
public:
    virtual ~TableViewDelegate() = default;
    /// The filled cell for a row, or nothing for an empty row. The table draws it at once.
    virtual TableCellView *tableViewViewForRow(int row) = 0;
    /// What assistive tools read for a row.
    virtual QString tableViewAccessibleTextForRow(int row) = 0;
    virtual void tableViewSelectionDidChange() = 0;
};

/// A list of rows of one height whose cells are drawn from a scene: one cell serves every row.
/// It shows the number of rows as of its last reload; a selection survives a reload by row where the row
/// still exists, else it is dropped and the delegate hears of it. Main thread only.
class TableView : public QListView
{
    Q_OBJECT
    Q_PROPERTY(int rowHeight READ rowHeight WRITE setRowHeight)
    Q_PROPERTY(QString cellStoryboard READ cellStoryboard WRITE setCellStoryboard)

public:
    explicit TableView(QWidget *parent = nullptr);
    ~TableView() override;

    void setDataSource(TableViewDataSource *dataSource);
    void setDelegate(TableViewDelegate *delegate);

    int rowHeight() const;
    void setRowHeight(int points);
    QString cellStoryboard() const;
    void setCellStoryboard(const QString &storyboard);

    /// The reusable cell made from the storyboard's scene of that identifier, or nothing when there is none.
    TableCellView *makeView(const QString &identifier);

    int numberOfRows() const;
    /// The first selected row, -1 without one.
    int selectedRow() const;
    int numberOfSelectedRows() const;
    /// Nothing happens when there is no such row.
    void selectRow(int row);
    void deselectAll();
    void reloadData();
    void scrollRowToVisible(int row);

    /// The space kept free around the rows, as the panel and the title bar lie over the table.
    QMargins contentInsets() const;
    void setContentInsets(const QMargins &insets);

Q_SIGNALS:
    /// A double click on a row, or Return with a row selected, also with Alt and Shift held: whoever answers
    /// reads the keyboard's state.
    void doubleActionTriggered();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;

private:
    class Model;
    class Painter;
    class Private;
    std::unique_ptr<Private> d;
};
