#include "DiskCache.h"

#include <base/FileWriting.h>

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.net", QtInfoMsg)

constexpr quint32 Signature = 0x504c5643; // "PLVC"
constexpr qint64 MaxFileBytes = 16LL * 1024 * 1024;
constexpr auto Suffix = ".answer"_L1;

QByteArray checksum(const QString &key, const QByteArray &content)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(key.toUtf8());
    hash.addData(content);
    return hash.result();
}

QByteArray packed(const DiskCache::Entry &entry)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << entry.stored << entry.expires << entry.etag << entry.body;
    return content;
}

std::optional<DiskCache::Entry> unpacked(const QByteArray &content)
{
    DiskCache::Entry entry;
    QDataStream stream(content);
    stream.setVersion(QDataStream::Qt_6_4);
    stream >> entry.stored >> entry.expires >> entry.etag >> entry.body;
    if (stream.status() != QDataStream::Ok || !entry.stored.isValid())
        return std::nullopt;
    return entry;
}

QFileInfoList files(const QString &folder)
{
    return QDir(folder).entryInfoList({u'*' + Suffix}, QDir::Files | QDir::NoSymLinks, QDir::Time);
}
} // namespace

DiskCache::DiskCache(const QString &folder, std::chrono::hours maxAge) : m_folder(folder), m_maxAge(maxAge) {}

QString DiskCache::pathOf(const QString &key) const
{
    const QByteArray name = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex();
    return m_folder + u'/' + QString::fromLatin1(name) + Suffix;
}

std::optional<DiskCache::Entry> DiskCache::find(const QString &key, const QDateTime &date) const
{
    QFile file(pathOf(key));
    if (!file.open(QIODevice::ReadOnly) || file.size() > MaxFileBytes)
        return std::nullopt;
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 signature = 0;
    QByteArray sum;
    QByteArray content;
    stream >> signature;
    if (signature != Signature)
        return std::nullopt;
    stream >> sum >> content;
    // The checksum is verified before the content is read.
    if (stream.status() != QDataStream::Ok || sum != checksum(key, content))
        return std::nullopt;
    std::optional<Entry> entry = unpacked(content);
    if (entry && entry->stored.addDuration(m_maxAge) < date)
        return std::nullopt;
    return entry;
}

bool DiskCache::store(const QString &key, const Entry &entry) const
{
    const QByteArray content = packed(entry);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << Signature << checksum(key, content) << content;
    const Result<void> written = writeFile(pathOf(key), bytes, FileAccess::OwnerOnly);
    if (!written)
        qCWarning(log).noquote() << "an answer was not kept:" << written.error().detail;
    return written.hasValue();
}

void DiskCache::remove(const QString &key) const
{
    QFile::remove(pathOf(key));
}

void DiskCache::prune(const QDateTime &date, qint64 maxBytes) const
{
    const QDateTime limit = date.addDuration(-m_maxAge);
    qint64 total = 0;
    for (const QFileInfo &file : files(m_folder)) { // the newest first
        total += file.size();
        if (file.lastModified() < limit || total > maxBytes)
            QFile::remove(file.filePath());
    }
}

void DiskCache::clear() const
{
    for (const QFileInfo &file : files(m_folder))
        QFile::remove(file.filePath());
}
