#pragma once
#include <QColor>
#include <QObject>
#include <QPointer>

class SettingsPortal;

/// The program's look on this desktop: light or dark, accent colour, reduced motion; read from the settings
/// portal on the session bus and followed live. Sets the application's palette and style. Main thread only.
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
    /// Does not block; the portal's answer is applied when it arrives.
    void install();

    Scheme scheme() const { return m_scheme; }
    QColor accentColor() const { return m_accent; }
    bool prefersReducedMotion() const { return m_reducedMotion; }

Q_SIGNALS:
    void changed();

private:
    Appearance() = default;
    static QColor defaultAccent(Scheme scheme);
    void followPortal();
    void applyPalette();

    QPointer<SettingsPortal> m_portal; // a child of the application, destroyed while the bus still exists
    Scheme m_platformScheme = Scheme::Light;
    Scheme m_scheme = Scheme::Light;
    QColor m_accent{0x2f, 0x6f, 0xde};
    bool m_reducedMotion = false;
};
