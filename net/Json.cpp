#include "Json.h"

#include <QJsonDocument>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

std::optional<QJsonObject> Json::object(const QByteArray &bytes)
{
    const QByteArray content = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(content, &error);
    // Accept a page in spite of one text with invalid UTF-8.
    if (error.error == QJsonParseError::IllegalUTF8String)
        document = QJsonDocument::fromJson(QString::fromUtf8(content).toUtf8(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

QString Json::text(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object[key];
    if (value.isDouble())
        return QString::number(value.toInteger());
    return value.toString();
}

std::optional<qint64> Json::integer(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object[key];
    if (value.isDouble()) {
        const double number = value.toDouble();
        if (std::abs(number) > 9e15 || number != std::floor(number))
            return std::nullopt;
        return value.toInteger();
    }
    bool isNumber = false;
    const qlonglong number = value.toString().trimmed().toLongLong(&isNumber);
    return isNumber ? std::optional<qint64>(number) : std::nullopt;
}

std::optional<int> Json::smallInteger(const QJsonObject &object, const QString &key)
{
    const std::optional<qint64> value = integer(object, key);
    if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(*value);
}

std::optional<double> Json::number(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object[key];
    if (value.isDouble())
        return value.toDouble();
    bool isNumber = false;
    const double number = value.toString().trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

bool Json::flag(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object[key];
    if (value.isBool())
        return value.toBool();
    return value.isDouble() ? value.toDouble() != 0
                            : value.toString() == "true"_L1 || value.toString() == u'1';
}
