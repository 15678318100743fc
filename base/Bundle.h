#pragma once
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>
#include <mutex>
#include <optional>

/// The program's resource folder. Its information and texts are read when the folder or the languages are
/// set. Any thread, once `main()` exists; workers also localise their messages.
class Bundle final
{
public:
    /// The bundle beside the executable: "resources" in its folder, else "../share/plovendix". Needs the
    /// application object.
    static Bundle &main();
    /// Gives the main bundle another folder, for tests. The folder need not exist. The preferred
    /// languages are again those of the environment.
    static void setMainFolder(const QString &folder);

    explicit Bundle(const QString &folder);
    Bundle(const Bundle &) = delete;
    Bundle &operator=(const Bundle &) = delete;

    QString folder() const;
    /// The content of Info.plist; none when the file is missing or is not a dictionary.
    std::optional<QVariantMap> infoDictionary() const;
    /// One value of the information dictionary, invalid when it is absent.
    QVariant objectForInfoDictionaryKey(const QString &key) const;
    /// The file "NAME.TYPE" at the top of the bundle or in its folder for the preferred language.
    std::optional<QString> pathForResource(const QString &name, const QString &type) const;
    /// The text for `key` in the default strings table ("de.lproj/Localizable.strings", a property list) of
    /// the first preferred language that has one; else `value`, and for an empty `value` the key itself.
    /// English needs no table, because the keys are English: it ends the search. A damaged table counts as
    /// missing.
    QString localizedString(const QString &key, const QString &value = {}) const;
    /// The languages to look up, the most preferred first. Without this call they come from LANGUAGE, LC_ALL,
    /// LC_MESSAGES and LANG.
    void setPreferredLocalizations(const QStringList &languages);

private:
    void moveTo(const QString &folder);
    void useLanguagesLocked(const QStringList &languages);

    mutable std::mutex m_mutex; // guards the rest
    QString m_folder;
    QStringList m_languageFolders; // the preferred one first
    std::optional<QVariantMap> m_info;
    QVariantMap m_strings;
};
