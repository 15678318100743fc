#pragma once
#include <model/LocaleUtilities.h>
#include <QStandardItemModel>

/// The menu of a pop-up. An item titled "-" becomes a separator line, which cannot be chosen and has no
/// value. Main thread only.
class MenuForBindings final : public QStandardItemModel
{
    Q_OBJECT

public:
    explicit MenuForBindings(QObject *parent = nullptr);

    /// Inserts an item before the one at `index`; an index beyond the end appends.
    void insertItem(const QString &title, const QVariant &representedObject, int index);
    /// Appends an item a language, which stands for the language's code.
    void addLanguages(const QList<Language> &languages);
    bool isSeparator(int index) const;
};
