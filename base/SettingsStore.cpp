#include "SettingsStore.h"
#include "DamagedFile.h"
#include "FileWriting.h"
#include "SettingsValue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QLoggingCategory>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr qint64 MaxBytes = 1024LL * 1024;
/// Waits until an editor that truncates the file has written it again.
constexpr auto DebounceInterval = 50ms;
constexpr auto LockTimeout = 200ms;

void apply(const SettingsFile::Values &changes, SettingsFile::Values &values)
{
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change.value().isValid())
            values.insert(change.key(), change.value());
        else
            values.remove(change.key());
    }
}

QString nearestExistingFolder(const QString &path)
{
    QString folder = QFileInfo(path).absolutePath();
    while (!QFileInfo(folder).isDir() && folder != QDir::rootPath())
        folder = QFileInfo(folder).absolutePath();
    return folder;
}
} // namespace

SettingsStore::SettingsStore(const QString &path, std::function<void()> changed)
    : m_path(path), m_changed(std::move(changed))
{
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(DebounceInterval);
    const auto restart = [this] { m_debounce.start(); };
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_debounce, restart);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_debounce, restart);
    QObject::connect(&m_debounce, &QTimer::timeout, &m_debounce, [this] {
        takeIn();
        m_changed();
    });
    takeIn();
}

QString SettingsStore::path() const
{
    return m_path;
}

QVariant SettingsStore::value(const QString &key) const
{
    return m_values.value(key);
}

void SettingsStore::set(const QString &key, const QVariant &value)
{
    // Store the value as it will be read back, so that it is equal before and after a restart.
    const QVariant kept = value.isValid() ? settingsValueFromText(settingsTextFromValue(value)) : QVariant();
    if (m_unwritten.isEmpty() && m_values.value(key) == kept && m_values.contains(key) == kept.isValid())
        return;
    m_unwritten.insert(key, kept);
    apply(m_unwritten, m_values);
    write();
}

void SettingsStore::synchronize()
{
    if (m_unwritten.isEmpty())
        takeIn();
    else
        write();
}

void SettingsStore::takeIn()
{
    watch();
    const std::optional<SettingsFile> file = read();
    if (!file) {
        qCWarning(log, "%s cannot be read as settings.", qUtf8Printable(m_path));
        return;
    }
    m_values = file->values();
    apply(m_unwritten, m_values);
}

void SettingsStore::write()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    QLockFile lock(m_path + u".lock"_s);
    if (QDir().mkpath(folder))
        lock.tryLock(LockTimeout);
    std::optional<SettingsFile> file = read();
    if (!file) {
        if (!setDamagedFileAside(m_path))
            return;
        // The values known before the damage go into the new file as soon as it can be written.
        apply(m_values, m_unwritten);
        file = SettingsFile();
    }
    const QByteArray bytes = file->bytesWith(m_unwritten);
    if (const Result<void> written = writeFile(m_path, bytes); !written) {
        qCWarning(log, "The settings were not written: %s", qUtf8Printable(written.error().detail));
        return;
    }
    m_unwritten.clear();
    m_values = SettingsFile::parsed(bytes).value_or(SettingsFile()).values();
    watch();
}

/// None when the file cannot be read as settings; empty settings when there is no file.
std::optional<SettingsFile> SettingsStore::read() const
{
    QFile file(m_path);
    if (!file.exists())
        return SettingsFile();
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxBytes)
        return {};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {};
    return SettingsFile::parsed(bytes);
}

/// The watcher loses a replaced file, and the folder may appear or vanish: watch what exists now.
void SettingsStore::watch()
{
    const QString folder = nearestExistingFolder(m_path);
    const QStringList folders = m_watcher.directories();
    if (folders != QStringList{folder}) {
        if (!folders.isEmpty())
            m_watcher.removePaths(folders);
        m_watcher.addPath(folder);
    }
    if (m_watcher.files().contains(m_path))
        m_watcher.removePath(m_path);
    if (QFileInfo::exists(m_path))
        m_watcher.addPath(m_path);
}
