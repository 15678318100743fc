#include "IncomingRequestHandler.h"

#include "ExternalAppInfo.h"
#include "FileSearching.h"

#include <base/FileManager.h>
#include <base/StandardOutput.h>
#include <base/LocalizedString.h>
#include <base/URLComponents.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
const QString SupportAddress = u"support@quorvane.example"_s;

base::Error requestError(const QString &description)
{
    return {QString(), 0, description};
}

/// A text that is a URL is used unchanged; any other is a path, relative to the working directory. The empty
/// one is the working directory itself.
QUrl fileURL(const QString &value)
{
    if (const auto url = parseURLString(value))
        return *url;
    return FileManager::urlFromFileSystemPath(QFile::encodeName(QDir::current().absoluteFilePath(value)));
}

std::optional<ExternalRequestInfo> requestInfo(const std::optional<QString> &docID,
                                               const std::optional<QString> &sender)
{
    if (!docID || !sender)
        return std::nullopt;
    return ExternalRequestInfo{*sender, *docID, companionAppName(*sender)};
}
} // namespace

void IncomingRequestHandler::handle(const std::optional<QString> &text)
{
    if (!text)
        return;
    const auto url = parseURLString(*text);
    if (!url)
        return;
    const auto components = URLComponents::fromURL(*url).value_or(URLComponents());
    const auto fileText = components.firstValue(u"fileurl"_s);
    if (!fileText) {
        const QString format = String::localize(u"Cannot create URL from %@. Contact %@"_s);
        return m_host.presentError(requestError(String::fill(format, {*text, SupportAddress})));
    }
    const auto info = requestInfo(components.firstValue(u"docid"_s), components.firstValue(u"sender"_s));
    const QUrl file = fileURL(*fileText);
    if (!file.isValid()) {
        const QString format = String::localize(u"Cannot create URL from %@"_s);
        return m_host.presentError(requestError(String::fill(format, {*fileText})));
    }
    deliver({file, info});
}

void IncomingRequestHandler::deliver(const ExternalRequest &request)
{
    if (!m_host.bringFirstWindowForward())
        return printLine(u"No window open?"_s);
    if (FileSearching *content = m_host.firstWindowContent())
        return content->searchForFile(request.url, request.requestInfo);
    m_host.park(request);
}
