#pragma once
#include "TableView.h"

#include <QAbstractListModel>

/// The number of rows as of the last reload, and the accessible text of each.
class TableView::Model final : public QAbstractListModel
{
public:
    explicit Model(QObject *parent) : QAbstractListModel(parent) {}

    void setDelegate(TableViewDelegate *delegate) { m_delegate = delegate; }

    void reset(int count)
    {
        beginResetModel();
        m_count = count;
        endResetModel();
    }

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_count; }

    QVariant data(const QModelIndex &index, int role) const override
    {
        // The display role serves selection by typing.
        const bool asked = role == Qt::AccessibleTextRole || role == Qt::DisplayRole;
        if (!asked || !index.isValid() || !m_delegate)
            return {};
        return m_delegate->tableViewAccessibleTextForRow(index.row());
    }

private:
    TableViewDelegate *m_delegate = nullptr;
    int m_count = 0;
};
