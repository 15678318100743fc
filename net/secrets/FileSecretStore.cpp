#include "FileSecretStore.h"

#include <base/DamagedFile.h>
#include <base/FileWriting.h>
#include <base/LocalizedString.h>
#include <base/MainQueue.h>
#include <net/Json.h>

#include <QFile>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.secrets", QtInfoMsg)

constexpr qint64 MaxBytes = 64LL * 1024;

/// Nothing when there is a file that cannot be read as secrets; no secrets when there is none.
std::optional<QJsonObject> content(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return QJsonObject();
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxBytes)
        return {};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {};
    return bytes.isEmpty() ? QJsonObject() : Json::object(bytes);
}

std::optional<QString> secretIn(const QJsonObject &secrets, Secret secret)
{
    const QString text = Json::text(secrets, SecretStore::nameOf(secret));
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

Error notRead(const QString &path)
{
    const QString sentence = String::localize(u"The keys in “%@” cannot be read."_s);
    return {u"Secrets"_s, 4, String::fill(sentence, {path}), path + u" is damaged"_s};
}

Error notStored(const QString &path, const QString &reason, const QString &detail)
{
    const QString sentence = String::localize(u"The key could not be stored in “%@”."_s);
    return {u"Secrets"_s, 1, (String::fill(sentence, {path}) + u' ' + reason).trimmed(), detail};
}

Result<void> save(const QString &path, const QJsonObject &secrets)
{
    const Result<void> written = writeFile(path, QJsonDocument(secrets).toJson(), FileAccess::Secret);
    return written ? written : notStored(path, written.error().localizedDescription, written.error().detail);
}
} // namespace

FileSecretStore::FileSecretStore(const QString &path) : m_path(path) {}

QString FileSecretStore::standardPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/Quorvane/Plovendix.secrets"_L1;
}

std::optional<QString> FileSecretStore::find(Secret secret) const
{
    const std::optional<QJsonObject> secrets = content(m_path);
    if (!secrets)
        qCWarning(log, "%s cannot be read as secrets.", qUtf8Printable(m_path));
    return secretIn(secrets.value_or(QJsonObject()), secret);
}

Result<void> FileSecretStore::store(Secret secret, const QString &text) const
{
    const std::optional<QJsonObject> known = content(m_path);
    if (!known && !setDamagedFileAside(m_path))
        return notStored(m_path, {}, u"the file is damaged"_s);
    QJsonObject secrets = known.value_or(QJsonObject());
    secrets.remove(nameOf(secret));
    if (!text.isEmpty())
        secrets[nameOf(secret)] = text;
    if (!secrets.isEmpty())
        return save(m_path, secrets);
    if (!QFile::exists(m_path) || QFile::remove(m_path))
        return {};
    return notStored(m_path, {}, u"the file cannot be removed"_s);
}

void FileSecretStore::read(Secret secret, ReadCompletion completion)
{
    const std::optional<QJsonObject> secrets = content(m_path);
    const Result<std::optional<QString>> answer =
        secrets ? Result(secretIn(*secrets, secret)) : notRead(m_path);
    MainQueue::shared().async([answer, completion = std::move(completion)] { completion(answer); });
}

void FileSecretStore::write(Secret secret, const QString &text, WriteCompletion completion)
{
    MainQueue::shared().async(
        [result = store(secret, text), completion = std::move(completion)] { completion(result); });
}
