#include "SettingsFile.h"
#include "GObjectPointer.h"
#include "SettingsValue.h"

#include <glib.h>

#include <QStringDecoder>

#include <memory>

namespace
{
constexpr char Group[] = "General";
constexpr GKeyFileFlags KeepEverything =
    static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);

struct FreeKeyFile
{
    void operator()(GKeyFile *file) const { g_key_file_free(file); }
};
struct FreeTexts
{
    void operator()(gchar **texts) const { g_strfreev(texts); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;
using Texts = std::unique_ptr<gchar *, FreeTexts>;

KeyFile loaded(const QByteArray &bytes)
{
    KeyFile file(g_key_file_new());
    const auto length = static_cast<gsize>(bytes.size());
    if (!bytes.isEmpty() &&
        !g_key_file_load_from_data(file.get(), bytes.constData(), length, KeepEverything, nullptr))
        return {};
    return file;
}

bool isText(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    return !decoder.hasError() && !text.contains(QChar::Null);
}

/// Escapes "=" and brackets, which INI keys cannot contain.
QByteArray writtenKey(const QString &key)
{
    return key.toUtf8().toPercentEncoding();
}

QString readKey(const char *key)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(key));
}

QString readText(GKeyFile *file, const char *key)
{
    GText text(g_key_file_get_string(file, Group, key, nullptr));
    // A backslash that starts no escape sequence was typed by a person and is kept.
    if (!text)
        text.reset(g_key_file_get_value(file, Group, key, nullptr));
    return QString::fromUtf8(text.get());
}
} // namespace

std::optional<SettingsFile> SettingsFile::parsed(const QByteArray &bytes)
{
    SettingsFile file;
    file.m_bytes = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    if (!isText(file.m_bytes) || !loaded(file.m_bytes))
        return {};
    return file;
}

SettingsFile::Values SettingsFile::values() const
{
    const KeyFile file = loaded(m_bytes);
    gsize count = 0;
    const Texts keys(g_key_file_get_keys(file.get(), Group, &count, nullptr));
    Values values;
    for (gsize index = 0; index < count; ++index) {
        const char *key = keys.get()[index];
        values.insert(readKey(key), settingsValueFromText(readText(file.get(), key)));
    }
    return values;
}

QByteArray SettingsFile::bytesWith(const Values &changes) const
{
    const KeyFile file = loaded(m_bytes);
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        const QByteArray key = writtenKey(change.key());
        const QByteArray text = settingsTextFromValue(change.value()).toUtf8();
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
    return plainSettingsText(value);
}
