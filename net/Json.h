#pragma once
#include <QJsonObject>
#include <QString>
#include <optional>

/// Reads JSON of any shape: a member that is missing, null or of another type counts as absent. Numbers may
/// be given as text and texts as numbers. Any thread.
namespace Json
{
/// Parses an object; none for everything else. A byte order mark and invalid UTF-8 within texts are accepted.
std::optional<QJsonObject> object(const QByteArray &bytes);

QString text(const QJsonObject &object, const QString &key);
std::optional<qint64> integer(const QJsonObject &object, const QString &key);
/// As above; none when the value does not fit into an int.
std::optional<int> smallInteger(const QJsonObject &object, const QString &key);
std::optional<double> number(const QJsonObject &object, const QString &key);
bool flag(const QJsonObject &object, const QString &key);
} // namespace Json
