#include "UserDefaults.h"
#include "FileWriting.h"
#include "MainQueue.h"
#include "SettingsFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QLockFile>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr qint64 MaxBytes = 1024LL * 1024;
constexpr double MaxInteger = 9e18; // a round number below the largest integer
constexpr auto SettlingTime = 50ms; // for an editor that empties the file before it fills it again
constexpr auto LockTimeout = 200ms;
} // namespace

/// One observer and the setting it last knew, so that each change reaches it once however it came about.
struct UserDefaults::ObserverEntry
{
    QString key;
    Observer observer;
    QVariant known;
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
    UserDefaults &defaults = standard();
    defaults.m_path = path;
    defaults.m_registered = defaults.m_stored = defaults.m_unwritten = QVariantMap();
    defaults.m_observers.clear();
    defaults.takeIn();
}

UserDefaults::UserDefaults(const QString &path) : m_path(path)
{
    m_settled.setSingleShot(true);
    const auto restart = [this] { m_settled.start(SettlingTime); };
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_settled, restart);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_settled, restart);
    QObject::connect(&m_settled, &QTimer::timeout, &m_settled, [this] {
        takeIn();
        notify();
    });
    takeIn();
}

void UserDefaults::registerDefaults(const QVariantMap &defaults)
{
    m_registered.insert(defaults);
    notify();
}

QVariant UserDefaults::object(const QString &key) const
{
    // Before there is an application object no thread is the main one yet.
    Q_ASSERT(!QCoreApplication::instance() || MainQueue::isMainThread());
    const QVariant value = m_unwritten.value(key, m_stored.value(key));
    return value.isValid() ? value : m_registered.value(key);
}

std::optional<QString> UserDefaults::string(const QString &key) const
{
    const QVariant value = object(key);
    return value.isValid() ? std::optional(SettingsFile::spelling(value)) : std::nullopt;
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
    if (value.metaType().id() != QMetaType::QString)
        return value.toLongLong();
    const QString text = value.toString().trimmed();
    bool isWhole = false;
    const qlonglong whole = text.toLongLong(&isWhole);
    const double number = text.toDouble();
    if (isWhole || std::isnan(number))
        return whole;
    return static_cast<qlonglong>(std::clamp(number, -MaxInteger, MaxInteger));
}

void UserDefaults::setObject(const QString &key, const QVariant &value)
{
    // The value as it will read back, so that it is the same before and after a restart.
    const QVariant kept = SettingsFile::readBack(value);
    if (m_unwritten.isEmpty() && m_stored.value(key) == kept)
        return;
    m_unwritten.insert(key, kept);
    write();
    notify();
}

void UserDefaults::synchronize()
{
    m_unwritten.isEmpty() ? takeIn() : write();
    notify();
}

UserDefaults::Observation UserDefaults::observe(const QString &key, Observer observer)
{
    const auto entry = std::make_shared<ObserverEntry>(ObserverEntry{key, std::move(observer), object(key)});
    std::erase_if(m_observers, [](const auto &known) { return known.expired(); });
    m_observers.push_back(entry);
    return {entry};
}

/// An observer may set values, end observations or replace the file: each entry is compared when its turn
/// comes, so that what a nested change has delivered already is not delivered again.
void UserDefaults::notify()
{
    const QString path = m_path;
    for (const auto &weakEntry : std::vector(m_observers)) {
        const auto entry = weakEntry.lock();
        if (!entry || m_path != path)
            continue;
        const QVariant value = object(entry->key);
        const QVariant known = std::exchange(entry->known, value);
        if (value.isValid() != known.isValid() ||
            SettingsFile::spelling(value) != SettingsFile::spelling(known))
            entry->observer(value);
    }
}

/// The file's bytes; none when they cannot be read as settings. A missing file is an empty one.
std::optional<QByteArray> UserDefaults::read() const
{
    QFile file(m_path);
    if (!file.exists())
        return QByteArray();
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxBytes)
        return {};
    const QByteArray bytes = file.readAll();
    const bool isRead = file.error() == QFileDevice::NoError && SettingsFile::values(bytes);
    return isRead ? std::optional(bytes) : std::nullopt;
}

void UserDefaults::takeIn()
{
    watch();
    if (const auto bytes = read())
        m_stored = *SettingsFile::values(*bytes);
    else
        qCWarning(log, "%s cannot be read as settings.", qUtf8Printable(m_path));
}

void UserDefaults::write()
{
    QLockFile lock(m_path + u".lock"_s);
    if (QDir().mkpath(QFileInfo(m_path).absolutePath()))
        lock.tryLock(LockTimeout);
    const std::optional<QByteArray> bytes = read();
    if (!bytes) {
        if (!setDamagedFileAside(m_path))
            return;
        // What was known before the file was damaged goes into its successor, as soon as that can be written.
        m_stored.insert(std::exchange(m_unwritten, {}));
        m_unwritten = m_stored;
    }
    const QByteArray changed = SettingsFile::changed(bytes.value_or(QByteArray()), m_unwritten);
    if (const auto written = writeFile(m_path, changed); !written) {
        qCWarning(log, "The settings were not written: %s", qUtf8Printable(written.error().detail));
        return;
    }
    m_unwritten.clear();
    takeIn();
}

/// A replaced file is another file to the watcher, and a folder may come or go: watches what is there now.
void UserDefaults::watch()
{
    QString folder = QFileInfo(m_path).absolutePath();
    while (!QFileInfo(folder).isDir() && folder != QDir::rootPath())
        folder = QFileInfo(folder).absolutePath();
    if (const QStringList watched = m_watcher.files() + m_watcher.directories(); !watched.isEmpty())
        m_watcher.removePaths(watched);
    // The folder is watched first, so that a file which is made after the check is noticed.
    m_watcher.addPath(folder);
    if (QFileInfo::exists(m_path))
        m_watcher.addPath(m_path);
}
