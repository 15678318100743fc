#include "URLComponents.h"

#include <QStringDecoder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// Characters that stay unescaped besides letters, digits and "-._~". Excluded are "&", "=", "+" and "#",
/// which have a meaning in a query, and ";", which some readers treat as "&".
constexpr char KeptInQuery[] = "/?:@!$'()*,";

qsizetype lengthOfCharacterAt(const QByteArray &bytes, qsizetype place)
{
    for (qsizetype length = 1; length <= 4 && place + length <= bytes.size(); ++length) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder(bytes.mid(place, length));
        if (!decoder.hasError() && !text.isEmpty())
            return length;
    }
    return 0;
}

/// Bytes that are not UTF-8 stay escaped, so that file names keep them.
QString decoded(const QString &text)
{
    const QByteArray bytes = QByteArray::fromPercentEncoding(text.toLatin1());
    QByteArray readable;
    for (qsizetype place = 0; place < bytes.size();) {
        const qsizetype length = lengthOfCharacterAt(bytes, place);
        readable += length > 0 ? bytes.mid(place, length) : '%' + bytes.mid(place, 1).toHex().toUpper();
        place += std::max<qsizetype>(length, 1);
    }
    return QString::fromUtf8(readable);
}

URLQueryItem itemFromText(const QString &text)
{
    const qsizetype sign = text.indexOf(u'=');
    if (sign < 0)
        return {decoded(text), std::nullopt};
    return {decoded(text.left(sign)), decoded(text.mid(sign + 1))};
}

QString escaped(const QString &text)
{
    return QString::fromLatin1(text.toUtf8().toPercentEncoding(KeptInQuery));
}

QString textFromItem(const URLQueryItem &item)
{
    return item.value ? escaped(item.name) + u'=' + escaped(*item.value) : escaped(item.name);
}
} // namespace

std::optional<URLComponents> URLComponents::fromURL(const QUrl &url)
{
    if (!url.isValid())
        return {};
    URLComponents components;
    components.scheme = url.scheme();
    components.host = url.host();
    components.path = url.path(QUrl::FullyDecoded);
    if (!url.hasQuery() || url.query(QUrl::FullyEncoded).isEmpty())
        return components;
    const QStringList texts = url.query(QUrl::FullyEncoded).split(u'&');
    for (const QString &text : texts)
        components.queryItems += itemFromText(text);
    return components;
}

std::optional<QUrl> URLComponents::url() const
{
    QUrl url;
    url.setScheme(scheme);
    url.setHost(host, QUrl::StrictMode);
    // Check now, because the following setters make the URL forget its error.
    if (url.scheme().isEmpty() != scheme.isEmpty() || url.host().isEmpty() != host.isEmpty())
        return {};
    url.setPath(path, QUrl::DecodedMode);
    QStringList texts;
    for (const URLQueryItem &item : queryItems)
        texts += textFromItem(item);
    if (!texts.isEmpty())
        url.setQuery(texts.join(u'&'), QUrl::StrictMode);
    return url.isValid() ? std::optional<QUrl>(url) : std::nullopt;
}

std::optional<QString> URLComponents::firstValue(const QString &name) const
{
    for (const URLQueryItem &item : queryItems) {
        if (item.name == name)
            return item.value;
    }
    return {};
}

std::optional<QUrl> parseURLString(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? std::optional<QUrl>(url) : std::nullopt;
}
