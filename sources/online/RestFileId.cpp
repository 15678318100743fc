#include "RestFileId.h"

#include "RestURL.h"

using namespace Qt::StringLiterals;

namespace
{
/// The same for every spelling of the base.
QString beginning(const QUrl &base)
{
    return QString::fromLatin1(RestURL::address(base, u"/download"_s).toEncoded()) + "?file_id="_L1;
}
} // namespace

QString RestFileId::of(const QUrl &base, qint64 number)
{
    return beginning(base) + QString::number(number);
}

std::optional<qint64> RestFileId::numberAt(const QUrl &base, const QString &id)
{
    const QString expected = beginning(base);
    bool isNumber = false;
    const qint64 number = id.mid(expected.size()).toLongLong(&isNumber);
    return id.startsWith(expected) && isNumber ? std::optional(number) : std::nullopt;
}
