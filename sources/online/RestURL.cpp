#include "RestURL.h"

using namespace Qt::StringLiterals;

namespace
{
QByteArray encoded(const QString &value)
{
    // toPercentEncoding keeps exactly A-Z a-z 0-9 - . _ ~
    return QUrl::toPercentEncoding(value.toLower().simplified()).replace("%20", "+");
}
} // namespace

QByteArray RestURL::query(const Parameters &parameters)
{
    QByteArrayList items;
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it) {
        const QByteArray value = encoded(it.value());
        if (!value.isEmpty())
            items += it.key().toLower().toLatin1() + '=' + value;
    }
    return items.join('&');
}

QUrl RestURL::address(const QUrl &base, const QString &path, const Parameters &parameters)
{
    QByteArray text = base.toEncoded(QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::StripTrailingSlash);
    text += path.toLatin1();
    const QByteArray items = query(parameters);
    if (!items.isEmpty())
        text += '?' + items;
    return QUrl::fromEncoded(text, QUrl::StrictMode);
}

QString RestURL::fileId(const QUrl &base, qint64 number)
{
    return QString::fromLatin1(address(base, u"/download"_s).toEncoded()) + "?file_id="_L1 +
           QString::number(number);
}

std::optional<qint64> RestURL::fileNumber(const QUrl &base, const QString &id)
{
    bool isNumber = false;
    const qint64 number = id.mid(id.lastIndexOf(u'=') + 1).toLongLong(&isNumber);
    return isNumber && id == fileId(base, number) ? std::optional(number) : std::nullopt;
}
