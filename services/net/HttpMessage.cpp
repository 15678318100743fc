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
