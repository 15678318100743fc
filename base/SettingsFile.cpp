#include "SettingsFile.h"
#include "GObjectPointer.h"

#include <glib.h>

#include <QDateTime>
#include <QStringDecoder>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Group[] = "General";

QVariant valueFromText(const QString &text)
{
    if (text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"'))
        return text.mid(1, text.size() - 2);
    if (text == u"true" || text == u"false")
        return text == u"true";
    // Only what would be written the same way is a number: "007" and "+1" are texts.
    if (const qlonglong number = text.toLongLong(); QString::number(number) == text)
        return number;
    const QDateTime date = QDateTime::fromString(text, Qt::ISODateWithMs);
    const bool hasZone = date.isValid() && date.timeSpec() != Qt::LocalTime && text.contains(u'T');
    return hasZone ? QVariant(date) : QVariant(text);
}

QString textFromValue(const QVariant &value)
{
    const QString text = SettingsFile::spelling(value);
    const QVariant read = valueFromText(text);
    const bool isOther = read.metaType() != value.metaType() || read != value;
    return isOther && value.metaType().id() == QMetaType::QString ? u'"' + text + u'"' : text;
}

/// Null for bytes that are no settings.
std::shared_ptr<GKeyFile> loaded(const QByteArray &bytes)
{
    const QByteArray plain = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(plain);
    if (decoder.hasError() || text.contains(QChar::Null))
        return {};
    std::shared_ptr<GKeyFile> file(g_key_file_new(), g_key_file_free);
    const auto flags = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
    const auto size = static_cast<gsize>(plain.size());
    if (size > 0 && !g_key_file_load_from_data(file.get(), plain.constData(), size, flags, nullptr))
        return {};
    return file;
}
} // namespace

std::optional<QVariantMap> SettingsFile::values(const QByteArray &bytes)
{
    const auto file = loaded(bytes);
    if (!file)
        return {};
    gsize count = 0;
    const GTextList keys(g_key_file_get_keys(file.get(), Group, &count, nullptr));
    QVariantMap values;
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

QByteArray SettingsFile::changed(const QByteArray &bytes, const QVariantMap &changes)
{
    const auto file = loaded(bytes);
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
    const bool isDate = value.metaType().id() == QMetaType::QDateTime;
    return isDate ? value.toDateTime().toUTC().toString(Qt::ISODateWithMs) : value.toString();
}

QVariant SettingsFile::readBack(const QVariant &value)
{
    return value.isValid() ? valueFromText(textFromValue(value)) : value;
}
