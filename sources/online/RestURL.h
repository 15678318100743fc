#pragma once
#include <QMap>
#include <QString>
#include <QUrl>

/// Addresses in the spelling that the service answers without a redirect: keys in alphabetical order,
/// everything in lower case, no empty values, a space as "+", the rest percent-encoded. Plain functions, any
/// thread.
namespace RestURL
{
using Parameters = QMap<QString, QString>; // sorted by key, as the address is

QByteArray query(const Parameters &parameters);
/// Adds `path`, encoded here, to `base` ("/subtitles" to ".../api/v1").
QUrl address(const QUrl &base, const QString &path, const Parameters &parameters = {});
} // namespace RestURL
