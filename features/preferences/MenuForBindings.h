#pragma once
#include <model/Language.h>
#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QVariant>

/// One item of a menu: its title and its value.
struct MenuItem
{
    QString title;
    QVariant representedObject = {};
};

/// The menu of a pop-up, filled item by item. An item titled "-" becomes a separator line, which cannot be
/// chosen and has no value. Main thread only.
class MenuForBindings final : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// Inserts the item before the one at `index`; an index beyond the end appends.
    void insertItem(const MenuItem &item, int index);
    /// Appends an item a language, which stands for the language's code.
    void addLanguages(const QList<Language> &languages);
    bool isSeparator(int index) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// Called by the pop-up's own insertion of items: an empty item first, then its title and value.
    bool insertRows(int row, int count, const QModelIndex &parent = {}) override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    bool removeRows(int row, int count, const QModelIndex &parent = {}) override;

private:
    struct Entry
    {
        MenuItem item;
        bool separator = false;
    };
    static Entry entryFor(const MenuItem &item);

    QList<Entry> m_entries;
};
