#pragma once
#include "SettingsFile.h"

#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>

/// The values of one settings file, synchronised with the file in both directions. Main thread only.
///
/// Each change is merged into the file's current content and replaces the file as a whole at once. Changes by
/// other processes are read shortly after. While the file cannot be written, changes stay in memory and each
/// later change tries again. An unreadable file does not change the values in memory; it is renamed to
/// "NAME.damaged-N" before the first write.
class SettingsStore final
{
public:
    /// `changed` is called from the event loop after another process may have changed values.
    SettingsStore(const QString &path, std::function<void()> changed);

    QString path() const;
    /// The stored value; invalid when there is none.
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
    SettingsFile::Values m_unwritten; // an invalid value stands for a removal
    QFileSystemWatcher m_watcher;
    QTimer m_debounce;
};
