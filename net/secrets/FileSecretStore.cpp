#include "FileSecretStore.h"

#include <base/FileWriting.h>
#include <base/LocalizedString.h>
#include <base/MainQueue.h>
#include <net/Json.h>

#include <QFile>
#include <QJsonDocument>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 MaxBytes = 64LL * 1024;

base::Error notRead(const QString &path, const QString &detail)
{
    const QString sentence = String::localize(u"The keys in “%@” cannot be read."_s);
    return {u"Secrets"_s, 4, String::fill(sentence, {path}), path + u' ' + detail};
}

/// An Error when there is a file that cannot be read as secrets; no secrets when there is none.
Result<QJsonObject> content(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return QJsonObject();
    if (!file.open(QIODevice::ReadOnly))
        return notRead(path, u"cannot be read: "_s + file.errorString());
    if (file.size() > MaxBytes)
        return notRead(path, u"is too large and so is damaged"_s);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return notRead(path, u"cannot be read: "_s + file.errorString());
    if (bytes.isEmpty())
        return QJsonObject();
    const std::optional<QJsonObject> secrets = Json::object(bytes);
    return secrets ? Result(*secrets) : notRead(path, u"is damaged"_s);
}

base::Error notStored(const QString &path, const QString &reason, const QString &detail)
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

Result<std::optional<QString>> FileSecretStore::lookUp(Secret secret) const
{
    const Result<QJsonObject> secrets = content(m_path);
    if (!secrets)
        return secrets.error();
    const QString text = Json::text(*secrets, nameOf(secret));
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

Result<void> FileSecretStore::store(Secret secret, const QString &text) const
{
    const Result<QJsonObject> known = content(m_path);
    if (!known && !setDamagedFileAside(m_path))
        return notStored(m_path, {}, known.error().detail);
    QJsonObject secrets = known ? *known : QJsonObject();
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
    MainQueue::shared().async(
        [answer = lookUp(secret), completion = std::move(completion)] { completion(answer); });
}

void FileSecretStore::write(Secret secret, const QString &text, WriteCompletion completion)
{
    MainQueue::shared().async(
        [result = store(secret, text), completion = std::move(completion)] { completion(result); });
}
