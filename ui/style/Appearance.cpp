#include "Appearance.h"
#include "AppearancePalette.h"
#include "ChromeColors.h"
#include "ChromeStyle.h"
#include <ui/system/SettingsPortal.h>

#include <QApplication>

Appearance &Appearance::shared()
{
    static Appearance appearance;
    return appearance;
}

void Appearance::install()
{
    // Read before our palette replaces that of the platform's theme.
    m_platformScheme = ChromeColors::isDark(QApplication::palette()) ? Scheme::Dark : Scheme::Light;
    QApplication::setStyle(new ChromeStyle);
    m_portal = new SettingsPortal(qApp);
    connect(m_portal, &SettingsPortal::changed, this, &Appearance::followPortal);
    m_scheme = m_platformScheme;
    m_accent = defaultAccent(m_scheme);
    applyPalette();
    m_portal->start();
}

QColor Appearance::defaultAccent(Scheme scheme)
{
    return scheme == Scheme::Dark ? QColor(0x4c, 0x8d, 0xff) : QColor(0x2f, 0x6f, 0xde);
}

void Appearance::followPortal()
{
    Scheme scheme = m_platformScheme;
    if (m_portal->colorScheme() == SettingsPortal::ColorScheme::Dark)
        scheme = Scheme::Dark;
    else if (m_portal->colorScheme() == SettingsPortal::ColorScheme::Light)
        scheme = Scheme::Light;
    const QColor accent = m_portal->accentColor().value_or(defaultAccent(scheme));
    const bool reducedMotion = m_portal->prefersReducedMotion();
    if (scheme == m_scheme && accent == m_accent && reducedMotion == m_reducedMotion)
        return;
    const bool recolored = scheme != m_scheme || accent != m_accent;
    m_scheme = scheme;
    m_accent = accent;
    m_reducedMotion = reducedMotion;
    if (recolored)
        applyPalette();
    Q_EMIT changed();
}

void Appearance::applyPalette()
{
    QApplication::setPalette(appearancePalette(m_scheme, m_accent));
}
