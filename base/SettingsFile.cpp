#include "SettingsFile.h"
#include "GObjectPointer.h"

#include <glib.h>

#include <QDateTime>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QUrl>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Group[] = "General";
constexpr auto BytesMark = "data:;base64,"_L1;

/// A value that is written without quotes and is no text; invalid for a text.
QVariant valueOtherThanText(const QString &text)
{
    static const QRegularExpression dateForm(
        uR"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d{1,3})?(Z|[+-]\d\d:\d\d)$)"_s);
    if (text == u"true" || text == u"false")
        return text == u"true";
    // Only what would be written the same way is a number: "007" and "+1" are texts.
    bool isNumber = false;
    if (const qlonglong whole = text.toLongLong(&isNumber); isNumber && QString::number(whole) == text)
        return whole;
    if (const double real = text.toDouble(&isNumber);
        isNumber && std::isfinite(real) && SettingsFile::spelling(real) == text)
        return real;
    const bool isDate = dateForm.match(text).hasMatch();
    if (const auto date = QDateTime::fromString(text, Qt::ISODateWithMs); isDate && date.isValid())
        return date;
    if (text.startsWith(BytesMark)) {
        const auto bytes = QByteArray::fromBase64Encoding(text.mid(BytesMark.size()).toLatin1(),
                                                          QByteArray::AbortOnBase64DecodingErrors);
        return bytes ? *bytes : QVariant();
    }
    const bool isCollection = text.startsWith(u'[') || text.startsWith(u'{');
    const auto document = isCollection ? QJsonDocument::fromJson(text.toUtf8()) : QJsonDocument();
    return document.isNull() ? QVariant() : document.toVariant();
}

bool isQuoted(const QString &text)
{
    return text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"');
}

QVariant valueFromText(const QString &text)
{
    if (isQuoted(text))
        return text.mid(1, text.size() - 2);
    const QVariant value = valueOtherThanText(text);
    return value.isValid() ? value : text;
}

QString textFromValue(const QVariant &value)
{
    const QString text = SettingsFile::spelling(value);
    const bool isText = value.metaType().id() == QMetaType::QString;
    return isText && (isQuoted(text) || valueOtherThanText(text).isValid()) ? u'"' + text + u'"' : text;
}

std::shared_ptr<GKeyFile> loaded(const QByteArray &bytes)
{
    const std::shared_ptr<GKeyFile> file(g_key_file_new(), g_key_file_free);
    const auto flags = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    const auto length = static_cast<gsize>(bytes.size());
    const bool isLoaded =
        bytes.isEmpty() || g_key_file_load_from_data(file.get(), bytes.constData(), length, flags, nullptr);
    return isLoaded ? file : nullptr;
}
} // namespace

std::optional<SettingsFile> SettingsFile::parsed(const QByteArray &bytes)
{
    SettingsFile file;
    file.m_bytes = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(file.m_bytes);
    if (decoder.hasError() || text.contains(QChar::Null) || !loaded(file.m_bytes))
        return {};
    return file;
}

SettingsFile::Values SettingsFile::values() const
{
    const auto file = loaded(m_bytes);
    gsize count = 0;
    const GTextList keys(g_key_file_get_keys(file.get(), Group, &count, nullptr));
    Values values;
    for (gsize index = 0; index < count; ++index) {
        const char *key = keys.get()[index];
        GText text(g_key_file_get_string(file.get(), Group, key, nullptr));
        // A backslash that starts no escape was typed by a person who meant it.
        if (!text)
            text.reset(g_key_file_get_value(file.get(), Group, key, nullptr));
        values.insert(QString::fromUtf8(QByteArray::fromPercentEncoding(key)),
                      valueFromText(QString::fromUtf8(text.get())));
    }
    return values;
}

QByteArray SettingsFile::bytesWith(const Values &changes) const
{
    const auto file = loaded(m_bytes);
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        // Keys may be any text, but an INI file knows no "=" or brackets in them.
        const QByteArray key = change.key().toUtf8().toPercentEncoding();
        const QByteArray text = textFromValue(change.value()).toUtf8();
        if (change.value().isValid())
            g_key_file_set_string(file.get(), Group, key.constData(), text.constData());
        else
            g_key_file_remove_key(file.get(), Group, key.constData(), nullptr);
    }
    gsize length = 0;
    const GText text(g_key_file_to_data(file.get(), &length, nullptr));
    return QByteArray(text.get(), static_cast<qsizetype>(length));
}

QString SettingsFile::spelling(const QVariant &value)
{
    static const QRegularExpression wholeNumber(u"^-?\\d+$"_s);
    const int type = value.metaType().id();
    if (type == QMetaType::Double || type == QMetaType::Float) {
        const QString text = QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        return text.contains(wholeNumber) ? text + u".0"_s : text; // 3.0 stays a real number
    }
    if (type == QMetaType::QDateTime)
        return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    if (type == QMetaType::QByteArray)
        return BytesMark + QString::fromLatin1(value.toByteArray().toBase64());
    if (type == QMetaType::QUrl)
        return value.toUrl().toString(QUrl::FullyEncoded);
    if (type == QMetaType::QStringList || type == QMetaType::QVariantList || type == QMetaType::QVariantMap)
        return QString::fromUtf8(QJsonDocument::fromVariant(value).toJson(QJsonDocument::Compact));
    return value.toString();
}

QVariant SettingsFile::readBack(const QVariant &value)
{
    return value.isValid() ? valueFromText(textFromValue(value)) : value;
}
