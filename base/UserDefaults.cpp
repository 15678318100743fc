#include "UserDefaults.h"
#include "MainQueue.h"
#include "SettingsFile.h"
#include "SettingsStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QStandardPaths>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
/// An observer and the value last reported to it, so that each change is reported once.
struct ObserverEntry
{
    QString key;
    UserDefaults::Observer observer;
    std::optional<QString> known;
    bool isActive = true;
};
using Entry = std::shared_ptr<ObserverEntry>;

std::optional<QString> spellingOf(const QVariant &value)
{
    return value.isValid() ? std::optional<QString>(SettingsFile::spelling(value)) : std::nullopt;
}

/// Without an application object there is no main thread to check against.
bool isRightThread()
{
    return !QCoreApplication::instance() || MainQueue::isMainThread();
}

QString standardPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/Quorvane/Plovendix.conf"_s;
}
} // namespace

class UserDefaults::Private final : public std::enable_shared_from_this<UserDefaults::Private>
{
public:
    explicit Private(const QString &path) : m_store(path, [this] { notify(); }) {}

    QString path() const { return m_store.path(); }

    QVariant effective(const QString &key) const
    {
        Q_ASSERT(isRightThread());
        const QVariant stored = m_store.value(key);
        return stored.isValid() ? stored : m_registered.value(key);
    }

    void registerDefaults(const QVariantMap &defaults)
    {
        Q_ASSERT(isRightThread());
        m_registered.insert(defaults);
        notify();
    }

    void set(const QString &key, const QVariant &value)
    {
        Q_ASSERT(isRightThread());
        m_store.set(key, value);
        notify();
    }

    void synchronize()
    {
        Q_ASSERT(isRightThread());
        m_store.synchronize();
        notify();
    }

    Observation observe(const QString &key, Observer observer)
    {
        auto entry = std::make_shared<ObserverEntry>(
            ObserverEntry{key, std::move(observer), spellingOf(effective(key))});
        m_observers.push_back(entry);
        return Observation([weak = weak_from_this(), entry] {
            entry->isActive = false;
            if (const auto self = weak.lock())
                std::erase(self->m_observers, entry);
        });
    }

private:
    /// An observer may set values, end observations or replace the defaults. Each entry is compared just
    /// before its call, so a nested change is not reported twice.
    void notify()
    {
        const auto self = weak_from_this().lock();
        const std::vector<Entry> entries = m_observers;
        for (const Entry &entry : entries) {
            const QVariant value = effective(entry->key);
            std::optional<QString> spelling = spellingOf(value);
            if (!entry->isActive || entry->known == spelling)
                continue;
            entry->known = std::move(spelling);
            entry->observer(value);
        }
    }

    QVariantMap m_registered;
    std::vector<Entry> m_observers;
    SettingsStore m_store;
};

UserDefaults &UserDefaults::standard()
{
    // Never destroyed: it watches files through the event loop, which is destroyed before statics.
    static auto *defaults = new UserDefaults(standardPath());
    return *defaults;
}

void UserDefaults::setStandardFile(const QString &path)
{
    standard().d = std::make_shared<Private>(path);
}

UserDefaults::UserDefaults(const QString &path) : d(std::make_shared<Private>(path)) {}

UserDefaults::~UserDefaults() = default;

QString UserDefaults::path() const
{
    return d->path();
}

void UserDefaults::registerDefaults(const QVariantMap &defaults)
{
    d->registerDefaults(defaults);
}

QVariant UserDefaults::object(const QString &key) const
{
    return d->effective(key);
}

std::optional<QString> UserDefaults::string(const QString &key) const
{
    const QVariant value = object(key);
    switch (value.metaType().id()) {
    case QMetaType::UnknownType:
    case QMetaType::QByteArray:
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
        return {};
    default:
        return SettingsFile::spelling(value);
    }
}

bool UserDefaults::boolean(const QString &key) const
{
    const QVariant value = object(key);
    if (value.metaType().id() != QMetaType::QString)
        return value.toBool();
    const QString text = value.toString().trimmed().toLower();
    return text == u"true" || text == u"yes" || text.toDouble() != 0;
}

qlonglong UserDefaults::integer(const QString &key) const
{
    const QVariant value = object(key);
    if (value.metaType().id() == QMetaType::QString)
        return value.toString().trimmed().toLongLong();
    return value.toLongLong();
}

void UserDefaults::setObject(const QString &key, const QVariant &value)
{
    const auto keptAlive = d;
    keptAlive->set(key, value);
}

void UserDefaults::removeObject(const QString &key)
{
    setObject(key, {});
}

void UserDefaults::synchronize()
{
    const auto keptAlive = d;
    keptAlive->synchronize();
}

UserDefaults::Observation UserDefaults::observe(const QString &key, Observer observer)
{
    return d->observe(key, std::move(observer));
}

QString UserDefaults::languageCode() const
{
    return string(u"languageCode"_s).value_or(u"en"_s);
}
