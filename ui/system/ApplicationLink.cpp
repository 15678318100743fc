#include "ApplicationLink.h"

#include "WindowSystem.h"
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

QDBusMessage callOfBus(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                          u"org.freedesktop.DBus"_s, method);
}

/// The caller's activation token, or its startup id when there is no token.
QString tokenOf(const QVariantMap &platformData)
{
    for (const QString &key : {u"activation-token"_s, u"desktop-startup-id"_s}) {
        const QVariant token = platformData.value(key);
        if (token.typeId() == QMetaType::QString && !token.toString().isEmpty())
            return token.toString();
    }
    return {};
}

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
}

/// Releases the name at once: this process may take a while to end, and a later start needs the name.
ApplicationLink::~ApplicationLink()
{
    if (!m_ownsName)
        return;
    QDBusMessage release = callOfBus(u"ReleaseName"_s);
    release << m_identifier;
    QDBusConnection::sessionBus().send(release);
}

ApplicationLink::Outcome ApplicationLink::start(const QStringList &uris, const QString &activationToken)
{
    if (!Workspace::hasSessionBus())
        return Outcome::Alone;
    QDBusConnection bus = QDBusConnection::sessionBus();
    // Register the object before the name, so that calls waiting for the name find it.
    if (!bus.isConnected() || !bus.registerObject(m_path, this, QDBusConnection::ExportScriptableSlots))
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
    QDBusMessage request = callOfBus(u"RequestName"_s);
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

void ApplicationLink::Activate(const QVariantMap &platformData)
{
    serveLater(platformData, [this] { Q_EMIT activated(); });
}

void ApplicationLink::Open(const QStringList &uris, const QVariantMap &platformData)
{
    serveLater(platformData, [this, uris] { Q_EMIT opened(uris); });
}

void ApplicationLink::ActivateAction(const QString &name, const QVariantList &,
                                     const QVariantMap &platformData)
{
    serveLater(platformData, [this, name] { Q_EMIT actionActivated(name); });
}

void ApplicationLink::serveLater(const QVariantMap &platformData, const std::function<void()> &request)
{
    const auto serve = [token = tokenOf(platformData), request] {
        WindowSystem::setActivationToken(token);
        request();
    };
    QMetaObject::invokeMethod(this, serve, Qt::QueuedConnection);
}
