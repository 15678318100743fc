#pragma once
#include <QByteArray>
#include <QString>
#include <functional>

/// Goes through the files inside an archive (zip, 7z, rar, tar and its packed kinds), whatever it claims to
/// hold: names are only read, never opened; sizes are bounded by the archive's own. Any thread.
namespace ArchiveMembers
{
inline constexpr qint64 MaxMemberBytes = 8LL * 1024 * 1024;
/// All members together, read or passed over, may be that many times as large as the archive, and always
/// this much.
inline constexpr qint64 MaxRatio = 100;
inline constexpr qint64 AlwaysAllowedBytes = 64LL * 1024 * 1024;

enum class End
{
    Whole,
    Stopped,
    Damaged,
    Unreadable, // the disk failed
    TooLarge,
    Locked // by a password, all of it or some wanted members; the others were taken
};

struct Visitor
{
    /// Whether a member is to be read. `number` counts the archive's members from 0.
    std::function<bool(qint64 number, const QString &path)> isWanted;
    /// Takes a member that was read, cut short after MaxMemberBytes and one more; false stops.
    std::function<bool(qint64 number, const QString &path, const QByteArray &content)> take;
    /// Asked after each member that was not read; false stops.
    std::function<bool()> passOver;
};

bool isArchiveName(const QString &name);
End visit(const QString &archive, const Visitor &visitor);
} // namespace ArchiveMembers
