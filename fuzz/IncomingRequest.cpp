// A link from a web page or a player: what is hashed, what the sheet suggests and what the reply names are
// one file, and a reply goes to companions alone.
#include "Oracle.h"

#include <base/FileManager.h>
#include <base/FilePaths.h>
#include <base/URLComponents.h>
#include <features/delivery/CompanionDelivery.h>
#include <features/delivery/FileSearching.h>
#include <features/delivery/IncomingRequestHandler.h>
#include <features/delivery/SuggestedFileName.h>
#include <tests/support/FakeFileManager.h>
#include <tests/support/FakeWorkspace.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
/// A window that keeps the request it is given.
class Host final : public IncomingRequestHost, public FileSearching
{
public:
    std::optional<ExternalRequest> request;
    int alerts = 0;

    bool bringFirstWindowForward() override { return true; }
    FileSearching *firstWindowContent() override { return this; }
    void park(const ExternalRequest &parked) override { request = parked; }
    void presentError(const base::Error &) override { ++alerts; }
    void searchForFile(const QUrl &url, const std::optional<ExternalRequestInfo> &info) override
    {
        request = ExternalRequest{url, info};
    }
};

void compareNames(const QUrl &video)
{
    const QByteArray path = FileManager::fileSystemPath(video);
    if (path.isEmpty() || lastComponent(path).isEmpty())
        return;
    Subtitle subtitle;
    subtitle.subLanguageID = u"eng"_s;
    subtitle.subFormat = u"srt"_s;
    const QString suggested = suggestedFileName(video, subtitle).value_or(QString());
    const QString name = textOfName(lastComponent(path));
    const qsizetype dot = name.lastIndexOf(u'.');
    require(suggested.startsWith(dot > 0 ? name.left(dot) : name), "the sheet names the file that is hashed");
}

void deliver(const std::optional<ExternalRequestInfo> &info)
{
    static const QTemporaryDir folder;
    FakeFileManager files;
    files.setMovies(folder.path());
    FakeWorkspace workspace;
    QFile downloaded(folder.filePath(u"Downloaded.srt"_s));
    require(downloaded.open(QIODevice::WriteOnly) && downloaded.write("1") == 1,
            "the temporary file is written");
    downloaded.close();

    Subtitle subtitle;
    subtitle.subLanguageID = u"eng"_s;
    subtitle.subFormat = u"srt"_s;
    const auto sent =
        CompanionDelivery(files, workspace).send(QUrl::fromLocalFile(downloaded.fileName()), subtitle, info);
    if (!sent) {
        require(downloaded.exists(), "a refused delivery leaves the file");
        require(workspace.opened.isEmpty(), "a refused delivery opens nothing");
        return;
    }
    require(QFile::exists(sent->url.toLocalFile()), "a delivered file exists");
    for (const QUrl &reply : workspace.opened) {
        const QString scheme = reply.scheme();
        for (const QString &other : {u"http"_s, u"https"_s, u"ftp"_s, u"file"_s, u"smb"_s, u"plovendix"_s})
            require(scheme != other, "a reply goes to a companion");
        require(URLComponents::fromURL(reply)->firstValue(u"filepath"_s) == sent->url.toLocalFile(),
                "the reply names the delivered file");
        require(URLComponents::fromURL(reply)->firstValue(u"docid"_s) == info->docID,
                "the reply names the document");
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const TimeLimit limit(500);
    Host host;
    IncomingRequestHandler(host).handle(QString::fromUtf8(bytesOf(data, size)));
    require(host.alerts <= 1 && !(host.alerts == 1 && host.request), "a request gives a search or one alert");
    if (!host.request)
        return 0;
    require(host.request->url.isValid(), "a search has a valid address");
    compareNames(host.request->url);
    if (host.request->requestInfo)
        deliver(host.request->requestInfo);
    return 0;
}
