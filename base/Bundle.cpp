#include "Bundle.h"
#include "Locale.h"
#include "PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

QString folderBesideExecutable()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    const QString beside = programs.filePath(u"resources"_s);
    return QFileInfo(beside).isDir() ? beside : QDir::cleanPath(programs.filePath(u"../share/plovendix"_s));
}

Bundle &mainBundle(const QString &folder)
{
    static Bundle bundle(folder.isEmpty() ? folderBesideExecutable() : folder);
    return bundle;
}

std::optional<QVariantMap> readDictionary(const QString &path)
{
    if (!QFileInfo::exists(path))
        return {};
    const Result<QVariant> list = readPropertyList(path);
    if (!list) {
        qCWarning(log, "%s", qUtf8Printable(list.error().detail));
        return {};
    }
    if (list->metaType().id() != QMetaType::QVariantMap)
        return {};
    return list->toMap();
}

/// Turns "pt_BR.UTF-8" into the folder names of its languages, the most specific first: "pt-BR", "pt".
QStringList folderNames(const QString &language)
{
    const QString plain = language.section(u'.', 0, 0).section(u'@', 0, 0).replace(u'_', u'-');
    QStringList names;
    for (QString name = plain; !name.isEmpty(); name = name.section(u'-', 0, -2))
        names += name;
    return names;
}
} // namespace

Bundle &Bundle::main()
{
    return mainBundle({});
}

void Bundle::setMainFolder(const QString &folder)
{
    mainBundle(folder).moveTo(folder);
}

Bundle::Bundle(const QString &folder) : m_folder(folder) {}

void Bundle::moveTo(const QString &folder)
{
    const std::scoped_lock lock(m_mutex);
    m_folder = folder;
    m_info.reset();
    m_strings.reset();
    m_languages.reset();
}

QString Bundle::folder() const
{
    const std::scoped_lock lock(m_mutex);
    return m_folder;
}

std::optional<QVariantMap> Bundle::infoDictionary() const
{
    const std::scoped_lock lock(m_mutex);
    return infoLocked();
}

QVariant Bundle::objectForInfoDictionaryKey(const QString &key) const
{
    const std::scoped_lock lock(m_mutex);
    const std::optional<QVariantMap> &info = infoLocked();
    return info ? info->value(key) : QVariant();
}

std::optional<QString> Bundle::pathForResource(const QString &name, const QString &type) const
{
    const QString fileName = type.isEmpty() ? name : name + u'.' + type;
    if (fileName.isEmpty())
        return {};
    const std::scoped_lock lock(m_mutex);
    const QStringList folders = QStringList{m_folder} + languageFoldersLocked();
    for (const QString &folder : folders) {
        const QString path = QDir(folder).filePath(fileName);
        if (QFileInfo::exists(path))
            return path;
    }
    return {};
}

QString Bundle::localizedString(const QString &key, const QString &value) const
{
    const std::scoped_lock lock(m_mutex);
    const QVariant text = stringsLocked().value(key);
    if (text.metaType().id() == QMetaType::QString)
        return text.toString();
    return value.isEmpty() ? key : value;
}

void Bundle::setPreferredLocalizations(const QStringList &languages)
{
    const std::scoped_lock lock(m_mutex);
    m_languages = languages;
    m_strings.reset();
}

QStringList Bundle::languageFoldersLocked() const
{
    QStringList folders;
    const QStringList languages = m_languages ? *m_languages : Locale::preferredLanguages();
    for (const QString &language : languages) {
        const QStringList names = folderNames(language);
        for (const QString &name : names)
            folders += QDir(m_folder).filePath(name + u".lproj"_s);
    }
    folders.removeDuplicates();
    return folders;
}

const std::optional<QVariantMap> &Bundle::infoLocked() const
{
    if (!m_info)
        m_info = readDictionary(QDir(m_folder).filePath(u"Info.plist"_s));
    return *m_info;
}

const QVariantMap &Bundle::stringsLocked() const
{
    if (m_strings)
        return *m_strings;
    m_strings.emplace();
    const QStringList folders = languageFoldersLocked();
    for (const QString &folder : folders) {
        const auto table = readDictionary(QDir(folder).filePath(u"Localizable.strings"_s));
        if (table)
            m_strings = *table;
        if (table || QFileInfo(folder).fileName() == u"en.lproj")
            break;
    }
    return *m_strings;
}
