#include "ApplicationObject.h"

#include "ActivationToken.h"
#include "ApplicationLink.h"

#include <QMetaObject>

using namespace Qt::StringLiterals;

namespace
{
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
} // namespace

ApplicationObject::ApplicationObject(ApplicationLink &link) : QDBusAbstractAdaptor(&link), m_link(link) {}

void ApplicationObject::Activate(const QVariantMap &platformData)
{
    const auto activate = [this, token = tokenOf(platformData)] {
        setActivationToken(token);
        Q_EMIT m_link.activated();
    };
    QMetaObject::invokeMethod(this, activate, Qt::QueuedConnection);
}

void ApplicationObject::Open(const QStringList &uris, const QVariantMap &platformData)
{
    const auto open = [this, uris, token = tokenOf(platformData)] {
        setActivationToken(token);
        Q_EMIT m_link.opened(uris);
    };
    QMetaObject::invokeMethod(this, open, Qt::QueuedConnection);
}

void ApplicationObject::ActivateAction(const QString &name, const QVariantList &,
                                       const QVariantMap &platformData)
{
    const auto activate = [this, name, token = tokenOf(platformData)] {
        setActivationToken(token);
        Q_EMIT m_link.actionActivated(name);
    };
    QMetaObject::invokeMethod(this, activate, Qt::QueuedConnection);
}
