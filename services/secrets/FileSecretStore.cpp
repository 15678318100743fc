#include "FileSecretStore.h"

#include <platform/Bundle.h>
#include <platform/MainQueue.h>
#include <services/net/Json.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 MaxBytes = 64LL * 1024;
constexpr QFile::Permissions OnlyThePerson = QFile::ReadOwner | QFile::WriteOwner;

QJsonObject content(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxBytes)
        return {};
    return Json::object(file.readAll()).value_or(QJsonObject());
}

bool save(const QString &path, const QJsonObject &secrets)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const QByteArray text = QJsonDocument(secrets).toJson();
    // The permissions are set while the file is still empty.
    return file.open(QIODevice::WriteOnly) && file.setPermissions(OnlyThePerson) &&
           file.write(text) == text.size() && file.commit() && QFile::setPermissions(path, OnlyThePerson);
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
    const QString text = Json::text(content(m_path), nameOf(secret));
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

Result<void> FileSecretStore::store(Secret secret, const QString &text) const
{
    QJsonObject secrets = content(m_path);
    secrets.remove(nameOf(secret));
    if (!text.isEmpty())
        secrets[nameOf(secret)] = text;
    const bool nothingLeft = secrets.isEmpty();
    if (nothingLeft ? !QFile::exists(m_path) || QFile::remove(m_path) : save(m_path, secrets))
        return {};
    return Error{
        u"Secrets"_s, 1,
        Bundle::main().localizedString(u"The key could not be stored in “%@”."_s).replace("%@"_L1, m_path),
        u"the file cannot be written"_s};
}

void FileSecretStore::read(Secret secret, ReadCompletion completion)
{
    MainQueue::shared().async(
        [text = find(secret), completion = std::move(completion)] { completion(text); });
}

void FileSecretStore::write(Secret secret, const QString &text, WriteCompletion completion)
{
    MainQueue::shared().async(
        [result = store(secret, text), completion = std::move(completion)] { completion(result); });
}
