#include "StoredContent.h"

#include "CatalogueDatabase.h"

#include <QCryptographicHash>
#include <QtEndian>

namespace
{
constexpr int PackingEffort = 6;

QByteArray digestOf(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha1);
}
} // namespace

StoredContent StoredContent::plain(const QByteArray &content)
{
    return {digestOf(content), content, {}};
}

StoredContent StoredContent::packed(const QByteArray &content)
{
    return {digestOf(content), {}, qCompress(content, PackingEffort)};
}

QByteArray StoredContent::unpacked(const QByteArray &bytes)
{
    // The stated size comes first; it determines the allocation.
    constexpr qsizetype SizeBytes = 4;
    if (bytes.size() <= SizeBytes ||
        qFromBigEndian<quint32>(bytes.constData()) > CatalogueDatabase::MaxSubtitleBytes)
        return {};
    const QByteArray content = qUncompress(bytes);
    return content.size() <= CatalogueDatabase::MaxSubtitleBytes ? content : QByteArray();
}
