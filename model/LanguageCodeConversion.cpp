#include "LanguageCodeConversion.h"

#include <base/Bundle.h>
#include <base/Locale.h>
#include <base/PropertyList.h>

#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
using Table = QHash<QString, QString>;

std::mutex tableMutex;
std::shared_ptr<const Table> loadedTable; // guarded by tableMutex, null until the first conversion

Table readTable()
{
    const auto path = Bundle::main().pathForResource(u"iso639_1_to_iso639_2"_s, u"plist"_s);
    if (!path)
        return {};
    const auto content = readPropertyList(*path);
    if (!content || content->metaType() != QMetaType::fromType<QVariantMap>())
        return {};
    Table table;
    const QVariantMap entries = content->toMap();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        // One entry that is not a text makes the whole table invalid.
        if (entry->metaType() != QMetaType::fromType<QString>())
            return {};
        table.insert(entry.key(), entry->toString());
    }
    return table;
}

std::optional<QString> entryFor(const QString &code)
{
    const auto entries = languageCodeTable();
    const auto found = entries->find(code);
    return found == entries->end() ? std::nullopt : std::optional(*found);
}
} // namespace

QString iso639_2LanguageCode(const QString &iso639_1LanguageCode)
{
    return entryFor(iso639_1LanguageCode).value_or(u"eng"_s);
}

std::optional<QString> iso639_2LanguageCode(const Locale &locale)
{
    const auto code = locale.languageCode();
    return code ? entryFor(*code) : std::nullopt;
}

std::shared_ptr<const QHash<QString, QString>> languageCodeTable()
{
    const std::scoped_lock lock(tableMutex);
    if (!loadedTable)
        loadedTable = std::make_shared<const Table>(readTable());
    return loadedTable;
}

void reloadLanguageCodeTable()
{
    const std::scoped_lock lock(tableMutex);
    loadedTable.reset();
}
