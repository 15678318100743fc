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
    const Result<QVariantMap> list = readPropertyList(path);
    if (!list)
        qCWarning(log, "%s", qUtf8Printable(list.error().detail));
    return list ? std::optional(*list) : std::nullopt;
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

Bundle::Bundle(const QString &folder)
{
    moveTo(folder);
}

void Bundle::moveTo(const QString &folder)
{
    const std::scoped_lock lock(m_mutex);
    m_folder = folder;
    m_info = readDictionary(QDir(folder).filePath(u"Info.plist"_s));
    useLanguagesLocked(Locale::preferredLanguages());
}

void Bundle::setPreferredLocalizations(const QStringList &languages)
{
    const std::scoped_lock lock(m_mutex);
    useLanguagesLocked(languages);
}

void Bundle::useLanguagesLocked(const QStringList &languages)
{
    m_languageFolders.clear();
    for (const QString &language : languages) {
        for (const QString &name : folderNames(language))
            m_languageFolders += QDir(m_folder).filePath(name + u".lproj"_s);
    }
    m_languageFolders.removeDuplicates();
    m_strings.clear();
    for (const QString &folder : std::as_const(m_languageFolders)) {
        const auto table = readDictionary(QDir(folder).filePath(u"Localizable.strings"_s));
        m_strings = table.value_or(QVariantMap());
        if (table || QFileInfo(folder).fileName() == u"en.lproj")
            break;
    }
}

QString Bundle::folder() const
{
    const std::scoped_lock lock(m_mutex);
    return m_folder;
}

std::optional<QVariantMap> Bundle::infoDictionary() const
{
    const std::scoped_lock lock(m_mutex);
    return m_info;
}

QVariant Bundle::objectForInfoDictionaryKey(const QString &key) const
{
    return infoDictionary().value_or(QVariantMap()).value(key);
}

std::optional<QString> Bundle::pathForResource(const QString &name, const QString &type) const
{
    const QString fileName = type.isEmpty() ? name : name + u'.' + type;
    if (fileName.isEmpty())
        return {};
    const std::scoped_lock lock(m_mutex);
    for (const QString &folder : QStringList{m_folder} + m_languageFolders) {
        const QString path = QDir(folder).filePath(fileName);
        if (QFileInfo::exists(path))
            return path;
    }
    return {};
}

QString Bundle::localizedString(const QString &key, const QString &value) const
{
    const std::scoped_lock lock(m_mutex);
    const QVariant text = m_strings.value(key);
    if (text.metaType().id() == QMetaType::QString)
        return text.toString();
    return value.isEmpty() ? key : value;
}
