#pragma once
#include "ExternalRequest.h"
#include <base/Result.h>
#include <model/Subtitle.h>

class FileManager;
class Workspace;

/// Why a subtitle could not be delivered to a companion application. `plovendixFolderNotPresent` is never
/// used: a folder that cannot be created counts as a missing Movies folder.
enum class SendSubtitleErrors
{
    couldNotFindMoviesFolder,
    plovendixFolderNotPresent
};

/// A subtitle in the folder from which the companion application fetches it.
struct CompanionFile
{
    QUrl url;
    bool isReplyTaken = false; // whether the platform took the reply URL
};

/// Delivers a downloaded subtitle to the companion application that asked for it. No widgets; any thread. The
/// file is moved, never copied: after success it no longer exists where the service put it.
class CompanionDelivery final
{
public:
    CompanionDelivery(FileManager &files, Workspace &workspace) : m_files(files), m_workspace(workspace) {}

    /// Moves `file` into the folder "Plovendix" of the person's Movies folder, replacing an older one, and
    /// opens the reply URL. An Error (domain "SendSubtitleErrors", code the case's position) when there is no
    /// such folder, or the move's own. Before anything is changed, an Error of the domain "CompanionDelivery"
    /// refuses a name that is not a file in a folder ("..") and a requester whose scheme no companion has.
    Result<CompanionFile> send(const QUrl &file, const Subtitle &subtitle,
                               const std::optional<ExternalRequestInfo> &request) const;

private:
    Result<QUrl> targetFolder() const;

    FileManager &m_files;
    Workspace &m_workspace;
};
