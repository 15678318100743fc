#pragma once
#include <QByteArray>
#include <QString>
#include <functional>

/// Reads the files in an archive (zip, 7z, rar, tar and compressed tar) safely: names are only read, never
/// opened, and sizes are limited by the archive's size. Any thread.
namespace ArchiveMembers
{
inline constexpr qint64 MaxMemberBytes = 8LL * 1024 * 1024;
/// The limit of all members together, read or skipped: this many times the archive's size, but at least
/// AlwaysAllowedBytes.
inline constexpr qint64 MaxRatio = 100;
inline constexpr qint64 AlwaysAllowedBytes = 64LL * 1024 * 1024;

enum class End
{
    Whole,
    Stopped,
    Damaged,
    Unreadable, // the disk failed
    TooLarge,
    Locked // some wanted members or all are protected by a password; the others were taken
};

struct Visitor
{
    /// Whether to read a member. `number` counts the archive's members from 0.
    std::function<bool(qint64 number, const QString &path)> isWanted;
    /// Takes a member, cut one byte after MaxMemberBytes; returns false to stop.
    std::function<bool(qint64 number, const QString &path, const QByteArray &content)> take;
    /// Called after each skipped member; returns false to stop.
    std::function<bool()> passOver;
};

bool isArchiveName(const QString &name);
End visit(const QString &archive, const Visitor &visitor);
} // namespace ArchiveMembers
