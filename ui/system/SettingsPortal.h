#pragma once
#include <QColor>
#include <QDBusVariant>
#include <QObject>
#include <optional>

class QDBusMessage;
class QDBusPendingCallWatcher;

/// Reads the desktop's look from the settings portal on the session bus and follows it. Does not block:
/// values arrive through `changed`; malformed values are ignored. Main thread only.
class SettingsPortal final : public QObject
{
    Q_OBJECT

public:
    enum class ColorScheme
    {
        NoPreference,
        Dark,
        Light
    };

    explicit SettingsPortal(QObject *parent);

    /// Subscribes and requests all values. Does nothing without a session bus.
    void start();

    ColorScheme colorScheme() const { return m_colorScheme; }
    /// None when the desktop has no accent colour.
    std::optional<QColor> accentColor() const { return m_accentColor; }
    bool prefersReducedMotion() const { return m_reducedMotion || !m_animationsEnabled; }

Q_SIGNALS:
    void changed();

private:
    Q_SLOT void takeChange(const QString &settingNamespace, const QString &key, const QDBusVariant &value);
    void takeAnswer(const QDBusMessage &answer);
    void take(const QString &settingNamespace, const QString &key, const QVariant &wrapped);

    ColorScheme m_colorScheme = ColorScheme::NoPreference;
    std::optional<QColor> m_accentColor;
    bool m_reducedMotion = false;
    bool m_animationsEnabled = true;
};
