#include "ApplicationLink.h"

#include "ApplicationObject.h"
#include <base/Workspace.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform.link", QtWarningMsg)

// Long enough for an instance that reads a slow disk, short enough for a person who waits for a window.
constexpr std::chrono::milliseconds DefaultTimeout(3000);
constexpr uint DoNotQueue = 4;
constexpr uint PrimaryOwner = 1;
constexpr uint AlreadyOwner = 4;

QVariantMap platformData(const QString &activationToken)
{
    if (activationToken.isEmpty())
        return {};
    return {{u"activation-token"_s, activationToken}, {u"desktop-startup-id"_s, activationToken}};
}
} // namespace

ApplicationLink::ApplicationLink(const QString &identifier, QObject *parent)
    : QObject(parent),
      m_identifier(identifier),
      m_path(u'/' + QString(identifier).replace(u'.', u'/')),
      m_timeout(DefaultTimeout)
{
    new ApplicationObject(*this); // owned by this object, as its parent
}

/// Releases the name at once: this process may take a while to end, and a later start needs the name.
ApplicationLink::~ApplicationLink()
{
    if (!m_ownsName)
        return;
    QDBusMessage release = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"ReleaseName"_s);
    release << m_identifier;
    QDBusConnection::sessionBus().send(release);
}

ApplicationLink::Outcome ApplicationLink::start(const QStringList &uris, const QString &activationToken)
{
    if (!Workspace::hasSessionBus())
        return Outcome::Alone;
    QDBusConnection bus = QDBusConnection::sessionBus();
    // Register the object before the name, so that calls waiting for the name find it.
    if (!bus.isConnected() || !bus.registerObject(m_path, this, QDBusConnection::ExportAdaptors))
        return Outcome::Alone;
    Name name = requestName(bus);
    if (name == Name::Taken) {
        if (handOver(bus, uris, activationToken))
            return Outcome::HandedOver;
        name = requestName(bus); // the owner of the name may have just ended
    }
    m_ownsName = name == Name::Ours;
    if (m_ownsName)
        return Outcome::First;
    bus.unregisterObject(m_path);
    return Outcome::Alone;
}

ApplicationLink::Name ApplicationLink::requestName(const QDBusConnection &bus) const
{
    QDBusMessage request = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << m_identifier << DoNotQueue;
    const QDBusMessage answer = bus.call(request, QDBus::Block, static_cast<int>(m_timeout.count()));
    if (answer.type() != QDBusMessage::ReplyMessage) {
        qCWarning(log) << "The session bus gave no name:" << answer.errorMessage();
        return Name::Unknown;
    }
    const uint result = answer.arguments().value(0).toUInt();
    return result == PrimaryOwner || result == AlreadyOwner ? Name::Ours : Name::Taken;
}

bool ApplicationLink::handOver(const QDBusConnection &bus, const QStringList &uris,
                               const QString &activationToken) const
{
    const QString method = uris.isEmpty() ? u"Activate"_s : u"Open"_s;
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_identifier, m_path, u"org.freedesktop.Application"_s, method);
    call.setAutoStartService(false);
    if (!uris.isEmpty())
        call << uris;
    call << platformData(activationToken);
    const QDBusMessage answer = bus.call(call, QDBus::Block, static_cast<int>(m_timeout.count()));
    if (answer.type() == QDBusMessage::ReplyMessage)
        return true;
    qCWarning(log) << "The running instance did not answer:" << answer.errorMessage();
    return false;
}
