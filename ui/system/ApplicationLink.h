#pragma once
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <chrono>
#include <functional>

class QDBusConnection;
class QDBusMessage;

/// Keeps one running instance of the program: the first instance owns the program's name on the session bus
/// and offers org.freedesktop.Application there; a later one passes its arguments on and ends. Without a
/// session bus every instance runs alone. Main thread only.
class ApplicationLink final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Outcome
    {
        First,      // later starts and other programs reach this instance from now on
        HandedOver, // another instance took the arguments; this one ends
        Alone       // there is no session bus, or the other instance does not answer
    };

    /// `identifier` is the name on the bus ("com.quorvane.Plovendix"); the object's path follows from it.
    explicit ApplicationLink(const QString &identifier, QObject *parent = nullptr);
    ~ApplicationLink() override;

    /// The time limit for an answer of another instance.
    void setTimeout(std::chrono::milliseconds timeout) { m_timeout = timeout; }

    /// Becomes the first instance, or passes the URIs and the activation token to it. Waits for at most one
    /// answer of the bus and one of the other instance. The first instance does nothing with the arguments.
    Outcome start(const QStringList &uris, const QString &activationToken);

    // Called over the bus. The caller is answered at once and the signals below are emitted afterwards, so
    // that no caller waits for an alert.
    // NOLINTBEGIN(readability-identifier-naming): the names that go over the bus
    Q_SCRIPTABLE Q_SLOT void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE Q_SLOT void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE Q_SLOT void ActivateAction(const QString &name, const QVariantList &parameter,
                                            const QVariantMap &platformData);
    // NOLINTEND(readability-identifier-naming)

Q_SIGNALS:
    // A window that comes forward in a receiver uses the caller's activation token.
    void activated();
    void opened(const QStringList &uris);
    void actionActivated(const QString &name);

private:
    enum class Name
    {
        Ours,
        Taken,
        Unknown
    };

    Name requestName(const QDBusConnection &bus) const;
    bool handOver(const QDBusConnection &bus, const QStringList &uris, const QString &activationToken) const;
    void serveLater(const QVariantMap &platformData, const std::function<void()> &request);

    const QString m_identifier;
    const QString m_path;
    std::chrono::milliseconds m_timeout;
    bool m_ownsName = false;
};
