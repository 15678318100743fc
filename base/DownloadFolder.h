#pragma once
#include "Result.h"
#include <QString>
#include <QUrl>
#include <chrono>

/// Where downloads land: each in a folder of its own, so that names never meet and the file may be moved
/// away. Made on the main thread; its functions may be called on any.
class DownloadFolder final
{
public:
    explicit DownloadFolder(const QString &path = standardPath());
    /// "Plovendix/downloads" in the person's cache folder.
    static QString standardPath();

    /// Writes a file named `name` (a plain file name) into a new folder. Domain "Downloads".
    Result<QUrl> publish(const QString &name, const QByteArray &content) const;
    /// Removes the downloads that nobody fetched within `age`. Failures are left for the next time.
    void clearOlderThan(std::chrono::hours age) const;

private:
    QString m_path;
    QString m_failureFormat; // localised on the main thread
};
