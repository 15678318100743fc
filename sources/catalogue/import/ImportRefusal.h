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
    EmptiedFolder, // all files that were imported from it are gone
    ClosedFolder,  // its content cannot be listed
    OtherKind      // neither a subtitle nor an archive
};

/// The text after the file's name, for the terminal.
QString textOf(ImportRefusal why);
