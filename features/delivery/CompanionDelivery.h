#pragma once
#include "ExternalRequest.h"
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

/// Delivers a downloaded subtitle to the companion application that asked for it: moves `file` (it is never
/// copied) into the folder "Plovendix" of the person's Movies folder, replacing an older one, and opens the
/// reply URL. Any thread.
///
/// An Error (domain "SendSubtitleErrors", code the case's position) when there is no such folder, or the
/// move's own. Before anything is changed, an Error of the domain "CompanionDelivery" refuses a name that is
/// not a file in a folder ("..") and a requester whose scheme no companion has.
Result<CompanionFile> sendToCompanion(const QUrl &file, const Subtitle &subtitle,
                                      const ExternalRequestInfo &request, FileManager &files,
                                      Workspace &workspace);
