#pragma once
#include "ExternalRequest.h"
#include <base/Result.h>
#include <model/Subtitle.h>

class FileManager;
class Workspace;

/// Why a subtitle could not be handed to a companion application. `plovendixFolderNotPresent` is never used:
/// a folder that cannot be made counts as a Movies folder that could not be found.
enum class SendSubtitleErrors
{
    couldNotFindMoviesFolder,
    plovendixFolderNotPresent
};

/// A subtitle that lies where the companion application can fetch it.
struct CompanionFile
{
    QUrl url;
    bool isReplyTaken = false; // whether the platform took the reply URL
};

/// Hands a downloaded subtitle to the companion application that asked for it.
/// No widgets; any thread. The file is moved, never copied: after success it is gone from where the service
/// put it.
class CompanionDelivery final
{
public:
    CompanionDelivery(FileManager &files, Workspace &workspace) : m_files(files), m_workspace(workspace) {}

    /// Moves `file` into the folder "Plovendix" of the person's Movies folder, in place of an older one, and
    /// opens the reply URL. An Error (domain "SendSubtitleErrors", code the case's position) when there is no
    /// such folder, or the move's own. Before anything is touched, an Error of the domain "CompanionDelivery"
    /// refuses a file whose name is none inside a folder ("..") and a requester whose scheme is no
    /// companion's.
    Result<CompanionFile> send(const QUrl &file, const Subtitle &subtitle,
                               const std::optional<ExternalRequestInfo> &request) const;

private:
    Result<QUrl> targetFolder() const;

    FileManager &m_files;
    Workspace &m_workspace;
};
