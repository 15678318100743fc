#include "UserDefaults.h"
#include "FileWriting.h"
#include "MainQueue.h"
#include "SettingsFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileSystemWatcher>
#include <QLockFile>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <QTimer>

#include <chrono>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr qint64 MaxBytes = 1024LL * 1024;
/// An editor that empties the file before it fills it again must not be met half-way.
constexpr auto SettlingTime = 50ms;
constexpr auto LockPatience = 200ms;
} // namespace

/// One observer and the setting it last knew, so that each change reaches it once however it came about.
struct UserDefaults::ObserverEntry
{
    QString key;
    Observer observer;
    QVariant known;
};

class UserDefaults::Store final : public std::enable_shared_from_this<UserDefaults::Store>
{
public:
    explicit Store(const QString &file) : path(file)
    {
        m_settled.setSingleShot(true);
        m_settled.setInterval(SettlingTime);
        const auto restart = [this] { m_settled.start(); };
        QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_settled, restart);
        QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_settled, restart);
        QObject::connect(&m_settled, &QTimer::timeout, &m_settled, [this] {
            takeIn();
            notify();
        });
        takeIn();
    }

    QVariant effective(const QString &key) const
    {
        // Before there is an application object no thread is the main one yet.
        Q_ASSERT(!QCoreApplication::instance() || MainQueue::isMainThread());
        const QVariant value = m_unwritten.value(key, m_stored.value(key));
        return value.isValid() ? value : registered.value(key);
    }

    void set(const QString &key, const QVariant &value)
    {
        // The value as it will read back, so that it is the same before and after a restart.
        const QVariant kept = SettingsFile::readBack(value);
        if (m_unwritten.isEmpty() && m_stored.value(key) == kept)
            return;
        m_unwritten.insert(key, kept);
        write();
    }

    void synchronize() { m_unwritten.isEmpty() ? takeIn() : write(); }

    /// An observer may set values, end observations or replace the defaults: each entry is compared when its
    /// turn comes, so that what a nested change has delivered already is not delivered again.
    void notify()
    {
        const auto keptAlive = shared_from_this();
        for (const auto &weakEntry : std::vector(observers)) {
            const auto entry = weakEntry.lock();
            const QVariant value = entry ? effective(entry->key) : QVariant();
            if (!entry || (value.isValid() == entry->known.isValid() &&
                           SettingsFile::spelling(value) == SettingsFile::spelling(entry->known)))
                continue;
            entry->known = value;
            entry->observer(value);
        }
    }

    const QString path;
    QVariantMap registered;
    std::vector<std::weak_ptr<ObserverEntry>> observers;

private:
    void takeIn()
    {
        watch();
        if (const auto file = read())
            m_stored = file->values();
        else
            qCWarning(log, "%s cannot be read as settings.", qUtf8Printable(path));
    }

    void write()
    {
        QLockFile lock(path + u".lock"_s);
        if (QDir().mkpath(QFileInfo(path).absolutePath()))
            lock.tryLock(LockPatience);
        std::optional<SettingsFile> file = read();
        if (!file) {
            if (!setDamagedFileAside(path))
                return;
            // What was known before the file was damaged goes into its successor, as soon as that can be
            // written.
            m_stored.insert(std::exchange(m_unwritten, {}));
            m_unwritten = m_stored;
            file = SettingsFile();
        }
        if (const auto written = writeFile(path, file->bytesWith(m_unwritten)); !written) {
            qCWarning(log, "The settings were not written: %s", qUtf8Printable(written.error().detail));
            return;
        }
        m_unwritten.clear();
        takeIn();
    }

    /// Nothing when there is a file that cannot be read as settings; no settings when there is none.
    std::optional<SettingsFile> read() const
    {
        QFile file(path);
        if (!file.exists())
            return SettingsFile();
        if (!file.open(QIODevice::ReadOnly) || file.size() > MaxBytes)
            return {};
        const QByteArray bytes = file.readAll();
        return file.error() == QFileDevice::NoError ? SettingsFile::parsed(bytes) : std::nullopt;
    }

    /// A replaced file is another file to the watcher, and a folder may come or go: watches what is there
    /// now.
    void watch()
    {
        QString folder = QFileInfo(path).absolutePath();
        while (!QFileInfo(folder).isDir() && folder != QDir::rootPath())
            folder = QFileInfo(folder).absolutePath();
        if (const QStringList watched = m_watcher.files() + m_watcher.directories(); !watched.isEmpty())
            m_watcher.removePaths(watched);
        m_watcher.addPath(folder);
        if (QFileInfo::exists(path))
            m_watcher.addPath(path);
    }

    QVariantMap m_stored;    // as the file was read last
    QVariantMap m_unwritten; // an invalid value is a removal
    QFileSystemWatcher m_watcher;
    QTimer m_settled;
};

UserDefaults &UserDefaults::standard()
{
    // Never destroyed: it watches files through the event loop, which is gone when statics are.
    static auto *defaults =
        new UserDefaults(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                         u"/Quorvane/Plovendix.conf"_s);
    return *defaults;
}

void UserDefaults::setStandardFile(const QString &path)
{
    standard().d = std::make_shared<Store>(path);
}

UserDefaults::UserDefaults(const QString &path) : d(std::make_shared<Store>(path)) {}

UserDefaults::~UserDefaults() = default;

QString UserDefaults::path() const
{
    return d->path;
}

void UserDefaults::registerDefaults(const QVariantMap &defaults)
{
    d->registered.insert(defaults);
    d->notify();
}

QVariant UserDefaults::object(const QString &key) const
{
    return d->effective(key);
}

std::optional<QString> UserDefaults::string(const QString &key) const
{
    const QVariant value = object(key);
    const int type = value.metaType().id();
    const bool isText = value.isValid() && type != QMetaType::QByteArray && type != QMetaType::QStringList &&
                        type != QMetaType::QVariantList && type != QMetaType::QVariantMap;
    return isText ? std::optional(SettingsFile::spelling(value)) : std::nullopt;
}

bool UserDefaults::boolean(const QString &key) const
{
    return toBoolean(object(key));
}

bool UserDefaults::toBoolean(const QVariant &value)
{
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

QString UserDefaults::languageCode() const
{
    return string(u"languageCode"_s).value_or(u"en"_s);
}

void UserDefaults::setObject(const QString &key, const QVariant &value)
{
    const auto store = d; // an observer may replace it
    store->set(key, value);
    store->notify();
}

void UserDefaults::synchronize()
{
    const auto store = d; // an observer may replace it
    store->synchronize();
    store->notify();
}

UserDefaults::Observation UserDefaults::observe(const QString &key, Observer observer)
{
    const auto entry = std::make_shared<ObserverEntry>(ObserverEntry{key, std::move(observer), object(key)});
    std::erase_if(d->observers, [](const auto &known) { return known.expired(); });
    d->observers.push_back(entry);
    return Observation(entry);
}
