#pragma once
#include <QMap>
#include <QString>
#include <QUrl>
#include <optional>

/// Addresses in the spelling that the service answers without a redirect: keys in alphabetical order,
/// everything in lower case, no empty values, a space as "+", the rest percent-encoded. Plain functions, any
/// thread.
namespace RestURL
{
using Parameters = QMap<QString, QString>; // sorted by key, as the address is

QByteArray query(const Parameters &parameters);
/// Adds `path`, encoded here, to `base` ("/subtitles" to ".../api/v1").
QUrl address(const QUrl &base, const QString &path, const Parameters &parameters = {});

/// The id of the file with that number. It includes the service, because two services may give two files one
/// number.
QString fileId(const QUrl &base, qint64 number);
/// The file's number at the service with this base; none for a file of another service.
std::optional<qint64> fileNumber(const QUrl &base, const QString &id);
} // namespace RestURL
