#include "MenuForBindings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

MenuForBindings::Entry MenuForBindings::entryFor(const MenuItem &item)
{
    if (item.title == "-"_L1)
        return {{}, true};
    return {item, false};
}

void MenuForBindings::insertItem(const MenuItem &item, int index)
{
    const int row = std::clamp(index, 0, rowCount());
    beginInsertRows({}, row, row);
    m_entries.insert(row, entryFor(item));
    endInsertRows();
}

void MenuForBindings::addLanguages(const QList<Language> &languages)
{
    for (const Language &language : languages)
        insertItem({language.name(), language.iso639_1()}, rowCount());
}

bool MenuForBindings::isSeparator(int index) const
{
    return index >= 0 && index < rowCount() && m_entries.at(index).separator;
}

int MenuForBindings::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

QVariant MenuForBindings::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Entry &entry = m_entries.at(index.row());
    // Pop-ups mark separator lines in this way.
    if (entry.separator)
        return role == Qt::AccessibleDescriptionRole ? QVariant(u"separator"_s) : QVariant();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return entry.item.title;
    case Qt::UserRole:
        return entry.item.representedObject;
    default:
        return {};
    }
}

Qt::ItemFlags MenuForBindings::flags(const QModelIndex &index) const
{
    if (!index.isValid() || isSeparator(index.row()))
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

bool MenuForBindings::insertRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || row > rowCount() || count < 1)
        return false;
    beginInsertRows({}, row, row + count - 1);
    m_entries.insert(row, count, Entry());
    endInsertRows();
    return true;
}

bool MenuForBindings::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    Entry &entry = m_entries[index.row()];
    MenuItem item = entry.item;
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        item.title = value.toString();
    else if (role == Qt::UserRole)
        item.representedObject = value;
    else
        return role == Qt::AccessibleDescriptionRole && isSeparator(index.row());
    // A separator line stays one, whatever data its item is given.
    if (!entry.separator)
        entry = entryFor(item);
    Q_EMIT dataChanged(index, index);
    return true;
}

bool MenuForBindings::removeRows(int row, int count, const QModelIndex &parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row + count > rowCount())
        return false;
    beginRemoveRows({}, row, row + count - 1);
    m_entries.remove(row, count);
    endRemoveRows();
    return true;
}
