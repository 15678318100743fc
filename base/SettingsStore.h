#pragma once
#include "SettingsFile.h"

#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>

/// The stored values of one settings file, kept in step with the file both ways. Main thread only.
///
/// Every change is written at once, into the file as it is at that moment, and replaces it whole. What
/// another process writes or replaces is taken in shortly after. While the file cannot be written, changes
/// hold in memory and each later change tries again. A file that cannot be read as settings changes nothing
/// in memory; it is renamed to "NAME.damaged-N" before the first write.
class SettingsStore final
{
public:
    /// `changed` is called from the event loop after values may have changed behind our back.
    SettingsStore(const QString &path, std::function<void()> changed);

    QString path() const;
    /// The stored value, invalid when there is none.
    QVariant value(const QString &key) const;
    /// An invalid value removes the key.
    void set(const QString &key, const QVariant &value);
    void synchronize();

private:
    void takeIn();
    void write();
    std::optional<SettingsFile> read() const;
    void watch();

    QString m_path;
    std::function<void()> m_changed;
    SettingsFile::Values m_values;
    SettingsFile::Values m_unwritten; // an invalid value is a removal
    QFileSystemWatcher m_watcher;
    QTimer m_debounce;
};
