#include "Appearance.h"
#include "ChromeColors.h"
#include "ChromeStyle.h"

#include <base/Workspace.h>

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QLoggingCategory>
#include <QPointer>

#include <tuple>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform.appearance", QtWarningMsg)

const auto PortalService = u"org.freedesktop.portal.Desktop"_s;
const auto PortalPath = u"/org/freedesktop/portal/desktop"_s;
const auto PortalInterface = u"org.freedesktop.portal.Settings"_s;
const auto AppearanceGroup = u"org.freedesktop.appearance"_s;
const auto InterfaceGroup = u"org.gnome.desktop.interface"_s;

/// Unwraps nested variants: the portal's older read call wraps its value twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

/// Red, green and blue from 0 to 1. The portal says "none" by a component outside that range.
std::optional<QColor> color(const QVariant &value)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)"_s)
        return {};
    double red = -1;
    double green = -1;
    double blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto valid = [](double part) { return part >= 0 && part <= 1; }; // false for NaN
    if (!valid(red) || !valid(green) || !valid(blue))
        return {};
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}
} // namespace

Appearance::Appearance(QObject *parent) : QObject(parent) {}

Appearance &Appearance::shared()
{
    static QPointer<Appearance> appearance;
    if (!appearance)
        appearance = new Appearance(qApp);
    return *appearance;
}

void Appearance::install()
{
    // Read before our palette replaces that of the platform's theme.
    m_themeScheme = ChromeColors::isDark(QApplication::palette()) ? Scheme::Dark : Scheme::Light;
    QApplication::setStyle(new ChromeStyle);
    applyPalette();
    listen();
}

QColor Appearance::accentColor() const
{
    return m_settings.accent.value_or(scheme() == Scheme::Dark ? QColor(0x4c, 0x8d, 0xff)
                                                               : QColor(0x2f, 0x6f, 0xde));
}

void Appearance::listen()
{
    if (!Workspace::hasSessionBus())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // The slot's parameter types are looked up by name and must be registered.
    qRegisterMetaType<QDBusVariant>();
    // Without the service's name, because looking up its owner would block.
    bus.connect({}, PortalPath, PortalInterface, u"SettingChanged"_s, this,
                SLOT(takeChange(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(PortalService, PortalPath, PortalInterface, u"ReadAll"_s);
    question << QStringList{AppearanceGroup, InterfaceGroup};
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        takeAnswer(watcher->reply());
        watcher->deleteLater();
    });
}

void Appearance::takeAnswer(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != u"a{sa{sv}}"_s) {
        qCInfo(log) << "The settings portal gave no answer:" << answer.errorMessage();
        return;
    }
    QMap<QString, QVariantMap> groups;
    answer.arguments().constFirst().value<QDBusArgument>() >> groups;
    Settings settings = m_settings;
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        for (auto setting = group->cbegin(); setting != group->cend(); ++setting)
            settings.take(group.key(), setting.key(), setting.value());
    }
    apply(settings);
}

void Appearance::takeChange(const QString &group, const QString &key, const QDBusVariant &value)
{
    Settings settings = m_settings;
    settings.take(group, key, value.variant());
    apply(settings);
}

void Appearance::Settings::take(const QString &group, const QString &key, const QVariant &wrapped)
{
    const QVariant value = unwrapped(wrapped);
    const bool isNumber = value.typeId() == QMetaType::UInt;
    const uint number = value.toUInt();
    if (group == InterfaceGroup && key == u"enable-animations"_s && value.typeId() == QMetaType::Bool)
        animations = value.toBool();
    if (group != AppearanceGroup)
        return;
    if (key == u"accent-color"_s)
        accent = color(value);
    else if (key == u"reduced-motion"_s && isNumber)
        reducedMotion = number == 1;
    else if (key == u"color-scheme"_s && isNumber)
        scheme = number == 1   ? std::optional(Scheme::Dark)
                 : number == 2 ? std::optional(Scheme::Light)
                               : std::nullopt;
}

void Appearance::apply(const Settings &settings)
{
    const auto look = [this] { return std::tuple(scheme(), accentColor(), prefersReducedMotion()); };
    const auto before = look();
    m_settings = settings;
    if (look() == before)
        return;
    applyPalette();
    Q_EMIT changed();
}

void Appearance::applyPalette() const
{
    QApplication::setPalette(ChromeColors::paletteFor(scheme() == Scheme::Dark, accentColor()));
}
