#pragma once
#include <QString>
#include <QUrl>
#include <optional>

/// What a result's file is called beyond the service's own number: two services may give two files one
/// number. Plain functions, any thread.
namespace RestFileId
{
/// The name of the file with that number at the service whose base this is.
QString of(const QUrl &base, qint64 number);
/// The number at that service; nothing for a file of another one.
std::optional<qint64> numberAt(const QUrl &base, const QString &id);
} // namespace RestFileId
