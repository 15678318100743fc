#pragma once
#include <QJsonObject>
#include <QString>
#include <optional>

/// Reads JSON that may be of any shape: a member that is missing, null or of another type is simply not
/// there. Numbers may come as text and the other way round. Any thread.
namespace Json
{
/// The object that the bytes spell; nothing for everything else. A byte order mark and broken UTF-8 inside
/// texts are forgiven.
std::optional<QJsonObject> object(const QByteArray &bytes);

QString text(const QJsonObject &object, const QString &key);
std::optional<qint64> integer(const QJsonObject &object, const QString &key);
/// As above, where it fits.
std::optional<int> smallInteger(const QJsonObject &object, const QString &key);
std::optional<double> number(const QJsonObject &object, const QString &key);
bool flag(const QJsonObject &object, const QString &key);
} // namespace Json
