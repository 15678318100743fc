#pragma once
#include <QMap>
#include <QString>
#include <QUrl>

/// Addresses in the one spelling that the service answers without a redirect: keys in alphabetical order,
/// everything lower case, nothing empty, a space as "+", the rest percent-encoded. Plain functions, any
/// thread.
namespace RestURL
{
using Parameters = QMap<QString, QString>; // sorted by key, as the address is

QByteArray query(const Parameters &parameters);
/// `path` below `base` ("/subtitles" below ".../api/v1"), exactly as encoded here.
QUrl address(const QUrl &base, const QString &path, const Parameters &parameters = {});
} // namespace RestURL
