#include "RestURL.h"

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
