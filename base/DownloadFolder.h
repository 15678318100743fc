#pragma once
#include "Result.h"
#include <QString>
#include <QUrl>
#include <chrono>

/// The folder of downloads. Each download gets a subfolder, so that equal names do not collide and the file
/// can be moved away. Created on the main thread; its functions may be called on any thread.
class DownloadFolder final
{
public:
    explicit DownloadFolder(const QString &path = standardPath());
    /// The path "Plovendix/downloads" in the person's cache folder.
    static QString standardPath();

    /// Writes a file named `name` (a plain file name) into a new folder. Domain "Downloads".
    Result<QUrl> publish(const QString &name, const QByteArray &content) const;
    /// Removes downloads older than `age`. A folder that cannot be removed is retried on the next call.
    void clearOlderThan(std::chrono::hours age) const;

private:
    QString m_path;
    QString m_failureFormat; // localised on the main thread
};
