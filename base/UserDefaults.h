#pragma once
#include <QFileSystemWatcher>
#include <QTimer>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// The person's settings: stored values over registered defaults, kept as INI in the group "General" of
/// $XDG_CONFIG_HOME/Quorvane/Plovendix.conf. Values are texts, whole numbers, booleans and dates. Main thread
/// only.
///
/// A change by any means (a setter here, another process that rewrites or replaces the file) reaches the
/// observers of the key once. Every change is written at once, into the file as it is at that moment, and
/// replaces it whole. While the file cannot be written, changes hold in memory and each later change tries
/// again. A file that cannot be read as settings changes nothing in memory; it is renamed to
/// "NAME.damaged-N" before the first write.
class UserDefaults final
{
    struct ObserverEntry;

public:
    /// Called with the new effective value (stored, else registered, else invalid).
    using Observer = std::function<void(const QVariant &)>;

    /// Ends the observation when it goes. May outlive the defaults.
    struct Observation
    {
        void invalidate() { entry.reset(); }
        std::shared_ptr<ObserverEntry> entry; // the defaults hold it weakly
    };

    static UserDefaults &standard();
    /// Gives the standard defaults another file, for tests. They forget what was registered and observed.
    static void setStandardFile(const QString &path);

    explicit UserDefaults(const QString &path);
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    QString path() const { return m_path; }
    /// Adds to the values that hold where nothing is stored; a key registered again takes the newer value.
    void registerDefaults(const QVariantMap &defaults);

    QVariant object(const QString &key) const;
    /// The value as text; none when there is no value.
    std::optional<QString> string(const QString &key) const;
    bool boolean(const QString &key) const { return toBoolean(object(key)); }
    /// A value as a yes or a no: the texts "yes" and "true" and numbers other than 0 are a yes, nothing is a
    /// no.
    static bool toBoolean(const QVariant &value);
    /// 0 when there is no value or it is no number; the text "86400" reads as 86400.
    qlonglong integer(const QString &key) const;
    /// The preferred subtitle language: the text under "languageCode", or "en" when there is none.
    QString languageCode() const
    {
        return string(QStringLiteral("languageCode")).value_or(QStringLiteral("en"));
    }

    /// An invalid value removes the key.
    void setObject(const QString &key, const QVariant &value);
    void removeObject(const QString &key) { setObject(key, {}); }
    /// Writes what is pending and takes in what another process wrote.
    void synchronize();

    [[nodiscard]] Observation observe(const QString &key, Observer observer);

private:
    std::optional<QByteArray> read() const;
    void takeIn();
    void write();
    void watch();
    void notify();

    QString m_path;
    QVariantMap m_registered;
    QVariantMap m_stored;    // as the file was read last
    QVariantMap m_unwritten; // an invalid value is a removal
    std::vector<std::weak_ptr<ObserverEntry>> m_observers;
    QFileSystemWatcher m_watcher;
    QTimer m_settled; // since the file's last change
};
