#include "SettingsStore.h"
#include "SettingsValue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QLoggingCategory>
#include <QSaveFile>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr qint64 MaxBytes = 1024LL * 1024;
/// An editor that empties the file before it fills it again must not be met half-way.
constexpr auto SettlingTime = 50ms;
constexpr auto LockPatience = 200ms;
constexpr int MaxDamagedFiles = 1000;

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
    m_settled.setSingleShot(true);
    m_settled.setInterval(SettlingTime);
    const auto restart = [this] { m_settled.start(); };
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_settled, restart);
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_settled, restart);
    QObject::connect(&m_settled, &QTimer::timeout, &m_settled, [this] {
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
    // The value as it will read back, so that it is the same before and after a restart.
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
    QSaveFile target(m_path);
    if (QDir().mkpath(folder))
        lock.tryLock(LockPatience);
    const std::optional<SettingsFile> file = read();
    if (!file && !setAside())
        return;
    // What was known before the file was damaged goes into its successor.
    const QByteArray bytes = file ? file->bytesWith(m_unwritten) : SettingsFile().bytesWith(m_values);
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.commit()) {
        qCWarning(log, "%s: %s", qUtf8Printable(m_path), qUtf8Printable(target.errorString()));
        return;
    }
    m_unwritten.clear();
    m_values = SettingsFile::parsed(bytes).value_or(SettingsFile()).values();
    watch();
}

bool SettingsStore::setAside()
{
    for (int number = 1; number <= MaxDamagedFiles; ++number) {
        const QString name = u"%1.damaged-%2"_s.arg(m_path).arg(number);
        if (QFile::exists(name))
            continue;
        if (!QFile::rename(m_path, name))
            break;
        qCWarning(log, "%s was damaged and is kept as %s.", qUtf8Printable(m_path), qUtf8Printable(name));
        return true;
    }
    qCWarning(log, "%s is damaged and cannot be set aside.", qUtf8Printable(m_path));
    return false;
}

/// Nothing when there is a file that cannot be read as settings; no settings when there is none.
std::optional<SettingsFile> SettingsStore::read() const
{
    QFile file(m_path);
    if (!file.exists())
        return SettingsFile();
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxBytes)
        return {};
    return SettingsFile::parsed(file.readAll());
}

/// A replaced file is another file to the watcher, and a folder may come or go: watches what is there now.
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
