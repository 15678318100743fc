#include "HttpMessage.h"

void HttpRequest::setHeader(const QByteArray &name, const QByteArray &value)
{
    for (auto &[known, content] : headers) {
        if (known.compare(name, Qt::CaseInsensitive) == 0) {
            content = value;
            return;
        }
    }
    headers.emplaceBack(name, value);
}

bool HttpAnswer::isCutShort() const
{
    constexpr int NotModified = 304; // its Content-Length describes a body that is not sent
    bool isNumber = false;
    const qint64 promised = header("Content-Length").toLongLong(&isNumber);
    return isNumber && status != NotModified && header("Content-Encoding").isEmpty() &&
           body.size() < promised;
}
