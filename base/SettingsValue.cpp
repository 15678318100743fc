#include "SettingsValue.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>

#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto BytesMark = "data:;base64,"_L1;

std::optional<QVariant> asNumber(const QString &text)
{
    bool isNumber = false;
    const qlonglong whole = text.toLongLong(&isNumber);
    // Only texts that are written back the same way are numbers: "007" and "+1" stay texts.
    if (isNumber && QString::number(whole) == text)
        return whole;
    const double real = text.toDouble(&isNumber);
    if (isNumber && std::isfinite(real) && plainSettingsText(real) == text)
        return real;
    return {};
}

std::optional<QVariant> asDate(const QString &text)
{
    static const QRegularExpression form(
        uR"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d{1,3})?(Z|[+-]\d\d:\d\d)$)"_s);
    if (!form.match(text).hasMatch())
        return {};
    const QDateTime date = QDateTime::fromString(text, Qt::ISODateWithMs);
    return date.isValid() ? std::optional<QVariant>(date) : std::nullopt;
}

std::optional<QVariant> asBytes(const QString &text)
{
    if (!text.startsWith(BytesMark))
        return {};
    const auto bytes = QByteArray::fromBase64Encoding(text.mid(BytesMark.size()).toLatin1(),
                                                      QByteArray::AbortOnBase64DecodingErrors);
    return bytes ? std::optional<QVariant>(*bytes) : std::nullopt;
}

std::optional<QVariant> asCollection(const QString &text)
{
    if (!text.startsWith(u'[') && !text.startsWith(u'{'))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    return document.isNull() ? std::nullopt : std::optional<QVariant>(document.toVariant());
}

std::optional<QVariant> asOtherThanText(const QString &text)
{
    if (text == u"true" || text == u"false")
        return text == u"true";
    for (const auto reading : {asNumber, asDate, asBytes, asCollection}) {
        if (const std::optional<QVariant> value = reading(text))
            return value;
    }
    return {};
}

bool isQuoted(const QString &text)
{
    return text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"');
}

QString textOfReal(double real)
{
    const QString text = QString::number(real, 'g', QLocale::FloatingPointShortest);
    // 3.0 stays a real number.
    return text.contains(QRegularExpression(u"^-?\\d+$"_s)) ? text + u".0"_s : text;
}
} // namespace

QString plainSettingsText(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool() ? u"true"_s : u"false"_s;
    case QMetaType::Double:
    case QMetaType::Float:
        return textOfReal(value.toDouble());
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    case QMetaType::QByteArray:
        return BytesMark + QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QUrl:
        return value.toUrl().toString(QUrl::FullyEncoded);
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
        return QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact));
    default:
        return value.toString();
    }
}

QString settingsTextFromValue(const QVariant &value)
{
    const QString plain = plainSettingsText(value);
    const bool isText = value.metaType().id() == QMetaType::QString;
    return isText && (isQuoted(plain) || asOtherThanText(plain)) ? u'"' + plain + u'"' : plain;
}

QVariant settingsValueFromText(const QString &text)
{
    if (isQuoted(text))
        return text.mid(1, text.size() - 2);
    return asOtherThanText(text).value_or(text);
}
