#include "SettingsPortal.h"

#include <base/SessionBus.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QLoggingCategory>
#include <QMap>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform.appearance", QtWarningMsg)

const auto PortalService = u"org.freedesktop.portal.Desktop"_s;
const auto PortalPath = u"/org/freedesktop/portal/desktop"_s;
const auto PortalInterface = u"org.freedesktop.portal.Settings"_s;
const auto AppearanceNamespace = u"org.freedesktop.appearance"_s;
const auto InterfaceNamespace = u"org.gnome.desktop.interface"_s;

/// Unwraps nested variants: the portal's older read call wraps its value twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<uint> unsignedNumber(const QVariant &value)
{
    return value.typeId() == QMetaType::UInt ? std::optional(value.toUInt()) : std::nullopt;
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

SettingsPortal::SettingsPortal(QObject *parent) : QObject(parent) {}

void SettingsPortal::start()
{
    if (!hasSessionBus())
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
    question << QStringList{AppearanceNamespace, InterfaceNamespace};
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        takeAnswer(watcher->reply());
        watcher->deleteLater();
    });
}

void SettingsPortal::takeAnswer(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != u"a{sa{sv}}"_s) {
        qCInfo(log) << "The settings portal gave no answer:" << answer.errorMessage();
        return;
    }
    QMap<QString, QVariantMap> namespaces;
    answer.arguments().constFirst().value<QDBusArgument>() >> namespaces;
    for (auto settings = namespaces.cbegin(); settings != namespaces.cend(); ++settings) {
        for (auto setting = settings->cbegin(); setting != settings->cend(); ++setting)
            take(settings.key(), setting.key(), setting.value());
    }
    Q_EMIT changed();
}

void SettingsPortal::takeChange(const QString &settingNamespace, const QString &key,
                                const QDBusVariant &value)
{
    take(settingNamespace, key, value.variant());
    Q_EMIT changed();
}

void SettingsPortal::take(const QString &settingNamespace, const QString &key, const QVariant &wrapped)
{
    const QVariant value = unwrapped(wrapped);
    if (settingNamespace == InterfaceNamespace) {
        if (key == u"enable-animations"_s && value.typeId() == QMetaType::Bool)
            m_animationsEnabled = value.toBool();
        return;
    }
    if (settingNamespace != AppearanceNamespace)
        return;
    if (key == u"accent-color"_s) {
        m_accentColor = color(value);
        return;
    }
    const std::optional<uint> number = unsignedNumber(value);
    if (!number)
        return;
    if (key == u"color-scheme"_s)
        m_colorScheme = *number == 1   ? ColorScheme::Dark
                        : *number == 2 ? ColorScheme::Light
                                       : ColorScheme::NoPreference;
    else if (key == u"reduced-motion"_s)
        m_reducedMotion = *number == 1;
}
