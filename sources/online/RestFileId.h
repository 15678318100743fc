#pragma once
#include <QString>
#include <QUrl>
#include <optional>

/// Ids of files that include the service, because two services may give two files one number. Plain
/// functions, any thread.
namespace RestFileId
{
/// The id of the file with that number at the service with this base.
QString of(const QUrl &base, qint64 number);
/// The number at that service; none for a file of another one.
std::optional<qint64> numberAt(const QUrl &base, const QString &id);
} // namespace RestFileId
