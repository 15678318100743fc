#pragma once
#include <QVariant>
#include <utility>
#include <functional>
#include <memory>
#include <optional>

/// The person's settings: stored values over registered defaults, kept as INI in the group "General" of
/// $XDG_CONFIG_HOME/Quorvane/Plovendix.conf. Main thread only.
///
/// Each change of a key, by a setter or by another process that writes the file, is reported to its observers
/// once. An unreadable file is kept under another name and never overwritten.
class UserDefaults final
{
public:
    /// Called with the new effective value (stored, else registered, else invalid).
    using Observer = std::function<void(const QVariant &)>;

    /// The destructor ends the observation. Movable; may outlive the defaults.
    class Observation final
    {
    public:
        Observation() = default;
        explicit Observation(std::function<void()> end) : m_end(std::move(end)) {}
        Observation(Observation &&other) noexcept : m_end(std::exchange(other.m_end, nullptr)) {}
        Observation &operator=(Observation &&other) noexcept
        {
            invalidate();
            m_end = std::exchange(other.m_end, nullptr);
            return *this;
        }
        ~Observation() { invalidate(); }
        void invalidate()
        {
            if (m_end)
                std::exchange(m_end, nullptr)();
        }

    private:
        std::function<void()> m_end;
    };

    static UserDefaults &standard();
    /// Replaces the standard defaults by those of another file, for tests.
    static void setStandardFile(const QString &path);

    explicit UserDefaults(const QString &path);
    ~UserDefaults();
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    QString path() const;

    /// Adds default values; a key registered again takes the newer value.
    void registerDefaults(const QVariantMap &defaults);

    QVariant object(const QString &key) const;
    /// The value as text, or nothing when there is none or it is not text (numbers and dates read as their
    /// text).
    std::optional<QString> string(const QString &key) const;
    bool boolean(const QString &key) const;
    /// 0 when there is no value or it is not a number; the text "86400" reads as 86400.
    qlonglong integer(const QString &key) const;

    void setObject(const QString &key, const QVariant &value);
    void removeObject(const QString &key);
    /// Writes pending changes and reads those of other processes.
    void synchronize();

    [[nodiscard]] Observation observe(const QString &key, Observer observer);

    /// The preferred subtitle language: the text under "languageCode", or "en" when there is none.
    QString languageCode() const;

private:
    class Private;
    std::shared_ptr<Private> d;
};
