#pragma once
#include <QProcess>
#include <QString>

/// A session bus of the test's own. Made before the application object, for Qt finds the bus by the
/// environment.
class PrivateBus final
{
public:
    PrivateBus()
    {
        m_daemon.start(
            QStringLiteral("dbus-daemon"),
            {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (m_daemon.waitForReadyRead())
            m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
    }
    ~PrivateBus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    QString address() const { return m_address; }

private:
    QProcess m_daemon;
    QString m_address;
};
