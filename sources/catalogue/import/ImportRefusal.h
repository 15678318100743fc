#pragma once
#include <QString>

/// Why a file was not entered.
enum class ImportRefusal
{
    NoSubtitle,
    TooLarge,
    NotUnpacked,
    DamagedArchive,
    LockedArchive, // by a password
    ArchiveBomb,   // unpacks to more than an archive of its size should
    Unreadable,
    Gone,
    EmptiedFolder, // nothing is left of what was entered from it
    ClosedFolder,  // what it holds cannot be seen
    OtherKind      // neither a subtitle nor an archive
};

/// What follows the file's name, for the terminal.
QString textOf(ImportRefusal why);
