#pragma once
#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

class ApplicationLink;

/// The running program's object on the session bus. Calls are answered at once and carried out afterwards, so
/// that no caller waits for an alert.
class ApplicationObject final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationObject(ApplicationLink &link);

    // NOLINTBEGIN(readability-identifier-naming): the names that go over the bus
    Q_SLOT void Activate(const QVariantMap &platformData);
    Q_SLOT void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SLOT void ActivateAction(const QString &name, const QVariantList &parameter,
                               const QVariantMap &platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    ApplicationLink &m_link;
};
