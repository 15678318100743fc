#include "CompanionDelivery.h"

#include "FileName.h"
#include "ReplyScheme.h"

#include <base/FileManager.h>
#include <base/URLComponents.h>
#include <base/Workspace.h>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray FolderName = "Plovendix";
const QString ReplyHost = u"plovendix-file"_s;

base::Error couldNotFindMoviesFolder()
{
    return {u"SendSubtitleErrors"_s, static_cast<int>(SendSubtitleErrors::couldNotFindMoviesFolder), {}};
}

base::Error refusal(const QString &detail)
{
    return {u"CompanionDelivery"_s, 0, {}, detail};
}

/// Named after the downloaded file, not the video, because the companion application knows its own document.
QByteArray deliveredName(const QUrl &file, const Subtitle &subtitle)
{
    QByteArray name = FileName::lastPathComponent(FileManager::fileSystemPath(file));
    name = FileName::deletingPathExtension(name);
    name = FileName::appendingPathExtension(name, subtitle.subLanguageID.toLower());
    return FileName::appendingPathExtension(name, subtitle.subFormat.toLower());
}

/// The path is encoded byte by byte, because the name on disk need not be UTF-8.
std::optional<QUrl> replyURL(const QByteArray &path, const std::optional<ExternalRequestInfo> &request)
{
    URLComponents components;
    components.scheme = request ? request->urlScheme : QString();
    components.host = ReplyHost;
    auto url = components.url();
    if (!url)
        return std::nullopt;
    QByteArray query = "filepath=" + path.toPercentEncoding("/");
    if (request)
        query += "&docid=" + request->docID.toUtf8().toPercentEncoding();
    url->setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    return url;
}
} // namespace

Result<CompanionFile> CompanionDelivery::send(const QUrl &file, const Subtitle &subtitle,
                                              const std::optional<ExternalRequestInfo> &request) const
{
    const QByteArray name = deliveredName(file, subtitle);
    if (!FileName::isPlain(name))
        return refusal(u"Not a file name: "_s + QString::fromUtf8(name));
    if (request && !mayBeRepliedTo(request->urlScheme, m_workspace))
        return refusal(u"Not a companion's scheme: "_s + request->urlScheme);
    const auto folder = targetFolder();
    if (!folder)
        return folder.error();

    const QByteArray path = FileManager::fileSystemPath(*folder) + '/' + name;
    const QUrl destination = FileManager::urlFromFileSystemPath(path);
    if (const auto moved = m_files.moveItemReplacing(file, destination); !moved)
        return moved.error();

    const auto reply = replyURL(path, request);
    return CompanionFile{destination, reply && m_workspace.openURL(*reply)};
}

Result<QUrl> CompanionDelivery::targetFolder() const
{
    const auto movies = m_files.moviesFolder();
    if (!movies)
        return couldNotFindMoviesFolder();
    QByteArray path = FileManager::fileSystemPath(*movies);
    if (!path.endsWith('/'))
        path += '/';
    const QUrl folder = FileManager::urlFromFileSystemPath(path + FolderName);
    if (!m_files.fileExists(folder))
        static_cast<void>(m_files.createDirectory(folder)); // the next line checks whether it exists
    if (!m_files.fileExists(folder))
        return couldNotFindMoviesFolder();
    return folder;
}
