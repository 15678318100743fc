// A link from a web page or a player: what is hashed, what the sheet suggests and what the reply names are
// one file, and a reply goes to companions alone.
#include "Oracle.h"

#include <base/FileManager.h>
#include <base/URLComponents.h>
#include <features/delivery/CompanionDelivery.h>
#include <features/delivery/ExternalRequest.h>
#include <features/delivery/FileName.h>
#include <tests/support/FakeFileManager.h>
#include <tests/support/FakeWorkspace.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace
{
void compareNames(const QUrl &video)
{
    const QString name = FileManager::displayName(video);
    if (name.isEmpty())
        return;
    Subtitle subtitle;
    subtitle.subLanguageID = u"eng"_s;
    subtitle.subFormat = u"srt"_s;
    const QString suggested = suggestedFileName(video, subtitle).value_or(QString());
    const qsizetype dot = name.lastIndexOf(u'.');
    require(suggested.startsWith(dot > 0 ? name.left(dot) : name), "the sheet names the file that is hashed");
}

void deliver(const ExternalRequestInfo &info)
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
        sendToCompanion(QUrl::fromLocalFile(downloaded.fileName()), subtitle, info, files, workspace);
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
        require(URLComponents::fromURL(reply)->firstValue(u"docid"_s) == info.docID,
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
    const auto read = readExternalRequest(QString::fromUtf8(bytesOf(data, size)));
    if (!read || !*read)
        return 0;
    const ExternalRequest &request = **read;
    require(request.url.isValid(), "a search has a valid address");
    compareNames(request.url);
    if (request.requestInfo)
        deliver(*request.requestInfo);
    return 0;
}
