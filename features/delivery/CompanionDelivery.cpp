#include "CompanionDelivery.h"

#include "FileName.h"

#include <base/FileManager.h>
#include <base/URLComponents.h>
#include <base/Workspace.h>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray FolderName = "Plovendix";
const QString ReplyHost = u"plovendix-file"_s;

/// Schemes of browsers and mail programs, of places that a desktop may open, and the program's own. The
/// desktop is asked as well, because its schemes depend on what is installed.
constexpr auto RefusedSchemes = "http https ws wss about data javascript view-source blob chrome mailto tel "
                                "file ftp ftps sftp ssh smb cifs nfs afp dav davs webdav webdavs trash admin "
                                "plovendix"_L1;

base::Error couldNotFindMoviesFolder()
{
    return {u"SendSubtitleErrors"_s, static_cast<int>(SendSubtitleErrors::couldNotFindMoviesFolder), {}};
}

base::Error refusal(const QString &detail)
{
    return {u"CompanionDelivery"_s, 0, {}, detail};
}

/// "name.extension". The name stays unchanged when the extension is empty or contains "/" or NUL.
QByteArray appendingPathExtension(const QByteArray &name, const QString &extension)
{
    const bool isPart = !extension.isEmpty() && !extension.contains(u'/') && !extension.contains(QChar::Null);
    return isPart ? name + '.' + extension.toUtf8() : name;
}

/// Whether a reply may be opened in the requested scheme. Any web page can make a request, so the reply,
/// which contains a path, must not go to a browser, a server, a disk or this program.
bool mayBeRepliedTo(const QString &scheme, Workspace &workspace)
{
    static const QStringList refused = QString(RefusedSchemes).split(u' ');
    return !refused.contains(scheme, Qt::CaseInsensitive) && !workspace.opensItself(scheme);
}

/// Named after the downloaded file, not the video, because the companion application knows its own document.
QByteArray deliveredName(const QUrl &file, const Subtitle &subtitle)
{
    QByteArray name = FileName::deletingPathExtension(FileName::lastPathComponent(file));
    name = appendingPathExtension(name, subtitle.subLanguageID.toLower());
    return appendingPathExtension(name, subtitle.subFormat.toLower());
}

/// Whether the name is one path component, and neither the folder itself nor its parent.
bool isPlain(const QByteArray &name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('\0');
}

Result<QUrl> targetFolder(FileManager &files)
{
    const auto movies = files.moviesFolder();
    if (!movies)
        return couldNotFindMoviesFolder();
    const QUrl folder =
        FileManager::urlFromFileSystemPath(FileManager::fileSystemPath(*movies) + '/' + FolderName);
    if (!files.fileExists(folder))
        static_cast<void>(files.createDirectory(folder)); // the next line checks whether it exists
    if (!files.fileExists(folder))
        return couldNotFindMoviesFolder();
    return folder;
}

/// The path is encoded byte by byte, because the name on disk need not be UTF-8.
std::optional<QUrl> replyURL(const QByteArray &path, const ExternalRequestInfo &request)
{
    URLComponents components;
    components.scheme = request.urlScheme;
    components.host = ReplyHost;
    auto url = components.url();
    if (!url)
        return std::nullopt;
    url->setQuery(QString::fromLatin1("filepath=" + path.toPercentEncoding("/") +
                                      "&docid=" + request.docID.toUtf8().toPercentEncoding()),
                  QUrl::StrictMode);
    return url;
}
} // namespace

Result<CompanionFile> sendToCompanion(const QUrl &file, const Subtitle &subtitle,
                                      const ExternalRequestInfo &request, FileManager &files,
                                      Workspace &workspace)
{
    const QByteArray name = deliveredName(file, subtitle);
    if (!file.isLocalFile() || !isPlain(name))
        return refusal(u"Not a file name: "_s + QString::fromUtf8(name));
    if (!mayBeRepliedTo(request.urlScheme, workspace))
        return refusal(u"Not a companion's scheme: "_s + request.urlScheme);
    const auto folder = targetFolder(files);
    if (!folder)
        return folder.error();

    const QByteArray path = FileManager::fileSystemPath(*folder) + '/' + name;
    const QUrl destination = FileManager::urlFromFileSystemPath(path);
    if (const auto moved = files.moveItemReplacing(file, destination); !moved)
        return moved.error();

    const auto reply = replyURL(path, request);
    return CompanionFile{destination, reply && workspace.openURL(*reply)};
}
