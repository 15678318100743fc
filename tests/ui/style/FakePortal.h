#pragma once
#include <tests/ui/system/PrivateBus.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QMap>
#include <QVariant>

using SettingsOfNamespaces = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(SettingsOfNamespaces)

/// Stands in for the desktop's settings portal: answers ReadAll with what the test set, whatever its shape,
/// and sends the signal of a change.
class FakePortal final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    QVariant answer; // to ReadAll; invalid refuses it
    int questions = 0;

    explicit FakePortal(const QString &busAddress)
        : m_bus(QDBusConnection::connectToBus(busAddress, QStringLiteral("fake portal")))
    {
        qDBusRegisterMetaType<SettingsOfNamespaces>();
        m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~FakePortal() override
    {
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/portal/desktop"));
        m_bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(QStringLiteral("fake portal"));
    }

    void sendChange(const QString &settingNamespace, const QString &key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.Settings"),
                                                         QStringLiteral("SettingChanged"));
        signal << settingNamespace << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }
    /// A structure of three numbers, as colours are sent.
    static QVariant color(double red, double green, double blue)
    {
        QDBusArgument argument;
        argument.beginStructure();
        argument << red << green << blue;
        argument.endStructure();
        return QVariant::fromValue(argument);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() != QStringLiteral("ReadAll"))
            return false;
        ++questions;
        connection.send(answer.isValid()
                            ? message.createReply(answer)
                            : message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("No")));
        return true;
    }

private:
    QDBusConnection m_bus;
};
