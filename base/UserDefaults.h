#pragma once
#include <QVariant>
#include <functional>
#include <memory>
#include <optional>

/// The person's settings: stored values over registered defaults, kept as INI in the group "General" of
/// $XDG_CONFIG_HOME/Quorvane/Plovendix.conf. Main thread only.
///
/// A change by any means (a setter here, another process that rewrites or replaces the file) reaches the
/// observers of the key once. Every change is written at once, into the file as it is at that moment, and
/// replaces it whole. While the file cannot be written, changes hold in memory and each later change tries
/// again. A file that cannot be read as settings changes nothing in memory; it is renamed to
/// "NAME.damaged-N" before the first write.
class UserDefaults final
{
    struct ObserverEntry;
    class Store;

public:
    /// Called with the new effective value (stored, else registered, else invalid).
    using Observer = std::function<void(const QVariant &)>;

    /// Ends the observation when it goes. Movable, may outlive the defaults.
    class Observation final
    {
    public:
        Observation() = default;
        explicit Observation(std::shared_ptr<ObserverEntry> entry) : m_entry(std::move(entry)) {}
        Observation(Observation &&) noexcept = default;
        Observation &operator=(Observation &&) noexcept = default;
        ~Observation() = default;
        void invalidate() { m_entry.reset(); }

    private:
        std::shared_ptr<ObserverEntry> m_entry; // the store knows it weakly
    };

    static UserDefaults &standard();
    /// Replaces the standard defaults by those of another file, for tests.
    static void setStandardFile(const QString &path);

    explicit UserDefaults(const QString &path);
    ~UserDefaults();
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    QString path() const;
    /// Adds to the values that hold where nothing is stored; a key registered again takes the newer value.
    void registerDefaults(const QVariantMap &defaults);

    QVariant object(const QString &key) const;
    /// The value as text, or nothing when there is none or it is not text (numbers and dates read as their
    /// text).
    std::optional<QString> string(const QString &key) const;
    bool boolean(const QString &key) const;
    /// A value as a yes or a no: the texts "yes" and "true" and numbers other than 0 are a yes, nothing is a
    /// no.
    static bool toBoolean(const QVariant &value);
    /// 0 when there is no value or it is no number; the text "86400" reads as 86400.
    qlonglong integer(const QString &key) const;
    /// The preferred subtitle language: the text under "languageCode", or "en" when there is none.
    QString languageCode() const;

    /// An invalid value removes the key.
    void setObject(const QString &key, const QVariant &value);
    void removeObject(const QString &key) { setObject(key, {}); }
    /// Writes what is pending and takes in what another process wrote.
    void synchronize();

    [[nodiscard]] Observation observe(const QString &key, Observer observer);

private:
    std::shared_ptr<Store> d;
};
