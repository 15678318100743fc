#include "MenuForBindings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
void separateIfHyphen(QStandardItem &item)
{
    if (item.text() != "-"_L1)
        return;
    item.setText({});
    item.setData({}, Qt::UserRole);
    item.setFlags(Qt::NoItemFlags);
    // Pop-ups mark separator lines in this way.
    item.setData(u"separator"_s, Qt::AccessibleDescriptionRole);
}
} // namespace

MenuForBindings::MenuForBindings(QObject *parent) : QStandardItemModel(parent)
{
    connect(this, &QStandardItemModel::itemChanged, this,
            [](QStandardItem *item) { separateIfHyphen(*item); });
    connect(this, &QStandardItemModel::rowsInserted, this, [this](const QModelIndex &, int first, int last) {
        for (int row = first; row <= last; ++row)
            separateIfHyphen(*item(row));
    });
}

void MenuForBindings::insertItem(const QString &title, const QVariant &representedObject, int index)
{
    auto *added = new QStandardItem(title);
    added->setData(representedObject, Qt::UserRole);
    added->setEditable(false);
    insertRow(std::clamp(index, 0, rowCount()), added);
}

void MenuForBindings::addLanguages(const QList<Language> &languages)
{
    for (const Language &language : languages)
        insertItem(language.name(), language.iso639_1(), rowCount());
}

bool MenuForBindings::isSeparator(int index) const
{
    return item(index) && item(index)->data(Qt::AccessibleDescriptionRole).isValid();
}
