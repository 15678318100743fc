#include "ExternalRequest.h"

#include "ExternalAppInfo.h"

#include <base/FileManager.h>
#include <base/LocalizedString.h>
#include <base/URLComponents.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
const QString SupportAddress = u"support@quorvane.example"_s;

/// A text that is a URL is used unchanged; any other is a path, relative to the working directory. The empty
/// one is the working directory itself.
QUrl fileURL(const QString &value)
{
    if (const auto url = parseURLString(value))
        return *url;
    return FileManager::urlFromFileSystemPath(QFile::encodeName(QDir::current().absoluteFilePath(value)));
}
} // namespace

Result<std::optional<ExternalRequest>> readExternalRequest(const std::optional<QString> &text)
{
    const auto url = text ? parseURLString(*text) : std::nullopt;
    if (!url)
        return std::optional<ExternalRequest>();
    const auto components = URLComponents::fromURL(*url).value_or(URLComponents());
    const auto fileText = components.firstValue(u"fileurl"_s);
    if (!fileText) {
        const QString format = String::localize(u"Cannot create URL from %@. Contact %@"_s);
        return base::Error{{}, 0, String::fill(format, {*text, SupportAddress})};
    }
    ExternalRequest request{fileURL(*fileText), std::nullopt};
    if (!request.url.isValid())
        return base::Error{
            {}, 0, String::fill(String::localize(u"Cannot create URL from %@"_s), {*fileText})};
    const auto docID = components.firstValue(u"docid"_s);
    const auto sender = components.firstValue(u"sender"_s);
    if (docID && sender)
        request.requestInfo = ExternalRequestInfo{*sender, *docID, companionAppName(*sender)};
    return std::optional(request);
}
