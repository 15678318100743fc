#pragma once
#include <QColor>
#include <QObject>
#include <optional>

class QDBusMessage;
class QDBusVariant;

/// The program's look on this desktop: light or dark, accent colour, reduced motion; read from the settings
/// portal on the session bus and followed live. Sets the application's palette and style. Main thread only;
/// destroyed with the application object, while the bus still exists.
class Appearance final : public QObject
{
    Q_OBJECT

public:
    enum class Scheme
    {
        Light,
        Dark
    };

    static Appearance &shared();
    /// Installs style and palette and starts to listen. Call once, after the application object was created.
    /// Does not block: the portal's answer is applied when it arrives. Malformed values are ignored.
    void install();

    Scheme scheme() const { return m_settings.scheme.value_or(m_themeScheme); }
    QColor accentColor() const;
    bool prefersReducedMotion() const { return m_settings.reducedMotion || !m_settings.animations; }

Q_SIGNALS:
    void changed();

private:
    /// What the portal said; none for what it leaves to the program.
    struct Settings
    {
        std::optional<Scheme> scheme;
        std::optional<QColor> accent;
        bool reducedMotion = false;
        bool animations = true;

        void take(const QString &group, const QString &key, const QVariant &wrapped);
    };

    explicit Appearance(QObject *parent);
    void listen();
    void takeAnswer(const QDBusMessage &answer);
    Q_SLOT void takeChange(const QString &group, const QString &key, const QDBusVariant &value);
    void apply(const Settings &settings);
    void applyPalette() const;

    Scheme m_themeScheme = Scheme::Light; // of the platform's theme, for a desktop without a preference
    Settings m_settings;
};
