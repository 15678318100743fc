#include "ArchiveMembers.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::size_t BlockBytes = 64ULL * 1024;

using Reader = std::unique_ptr<archive, int (*)(archive *)>;

Reader newReader()
{
    Reader reader(archive_read_new(), archive_read_free);
    archive_read_support_filter_gzip(reader.get());
    archive_read_support_filter_bzip2(reader.get());
    archive_read_support_filter_xz(reader.get());
    archive_read_support_filter_zstd(reader.get());
    archive_read_support_format_zip(reader.get());
    archive_read_support_format_7zip(reader.get());
    archive_read_support_format_rar(reader.get());
    archive_read_support_format_rar5(reader.get());
    archive_read_support_format_tar(reader.get());
    return reader;
}

/// Whether an archive or the disk caused a read error.
ArchiveMembers::End faultOf(archive *reader)
{
    const int fault = archive_errno(reader);
    return fault == EIO || fault == ESTALE ? ArchiveMembers::End::Unreadable : ArchiveMembers::End::Damaged;
}

QString pathOf(archive_entry *entry)
{
    const char *utf8 = archive_entry_pathname_utf8(entry);
    const char *path = utf8 ? utf8 : archive_entry_pathname(entry);
    return QString::fromUtf8(path ? path : "").replace(u'\\', u'/');
}

/// Reads the current entry; none when it cannot be read. Reads at most one byte more than `limit`, which
/// shows that the entry is larger.
std::optional<QByteArray> contentOf(archive *reader, qint64 limit)
{
    QByteArray content;
    QByteArray block(static_cast<qsizetype>(BlockBytes), Qt::Uninitialized);
    while (true) {
        const la_ssize_t count = archive_read_data(reader, block.data(), BlockBytes);
        if (count == 0)
            return content;
        if (count < 0)
            return std::nullopt;
        content.append(block.constData(), count);
        if (content.size() > limit)
            return content.first(limit + 1);
    }
}

/// The number of bytes that the members may still unpack to. Skipped members count as well, because a solid
/// archive unpacks them too.
class Allowance
{
public:
    explicit Allowance(qint64 archiveBytes)
        : m_bytes(std::max(archiveBytes * ArchiveMembers::MaxRatio, ArchiveMembers::AlwaysAllowedBytes)),
          m_left(m_bytes)
    {
    }

    /// Whether the unpacked size of a compressed tar so far is within the allowance.
    bool covers(archive *reader) const { return archive_filter_bytes(reader, 0) <= m_bytes; }
    bool take(qint64 bytes)
    {
        m_left = bytes < 0 ? -1 : m_left - std::min(bytes, m_left + 1);
        return m_left >= 0;
    }

private:
    qint64 m_bytes;
    qint64 m_left;
};

/// Unpacks the rest of an entry of unknown size within the allowance, as the reader would do on the way to
/// the next one.
bool passRest(archive *reader, Allowance &allowance)
{
    QByteArray block(static_cast<qsizetype>(BlockBytes), Qt::Uninitialized);
    while (true) {
        const la_ssize_t count = archive_read_data(reader, block.data(), BlockBytes);
        if (count <= 0)
            return true; // at the end, or the next header reports the error
        if (!allowance.take(count))
            return false;
    }
}
} // namespace

bool ArchiveMembers::isArchiveName(const QString &name)
{
    static const QStringList endings{u".zip"_s, u".7z"_s,      u".rar"_s,    u".tar"_s, u".tar.gz"_s,
                                     u".tgz"_s, u".tar.bz2"_s, u".tar.xz"_s, u".txz"_s, u".tar.zst"_s};
    return std::any_of(endings.begin(), endings.end(), [&](const QString &ending) {
        return name.size() > ending.size() && name.endsWith(ending, Qt::CaseInsensitive);
    });
}

ArchiveMembers::End ArchiveMembers::visit(const QString &archive, const Visitor &visitor)
{
    const QFileInfo info(archive);
    if (!info.isFile())
        return End::Damaged;
    const Reader reader = newReader();
    if (archive_read_open_filename(reader.get(), QFile::encodeName(archive).constData(), BlockBytes) !=
        ARCHIVE_OK)
        return faultOf(reader.get());
    Allowance allowance(info.size());
    End end = End::Whole;
    archive_entry *entry = nullptr;
    for (qint64 number = 0;; ++number) {
        const int status = archive_read_next_header(reader.get(), &entry);
        if (status == ARCHIVE_EOF)
            return end;
        if (status != ARCHIVE_OK && status != ARCHIVE_WARN)
            return archive_read_has_encrypted_entries(reader.get()) > 0 ? End::Locked : faultOf(reader.get());
        const bool isStated = archive_entry_size_is_set(entry) != 0;
        const qint64 stated = isStated ? archive_entry_size(entry) : 0;
        if (!allowance.take(stated) || !allowance.covers(reader.get()))
            return End::TooLarge;
        const QString path = pathOf(entry);
        const bool isWanted = archive_entry_filetype(entry) == AE_IFREG && visitor.isWanted(number, path);
        const bool isEncrypted = isWanted && archive_entry_is_data_encrypted(entry) != 0;
        if (isEncrypted)
            end = End::Locked;
        if (!isWanted && !isStated && !passRest(reader.get(), allowance))
            return End::TooLarge;
        if (!isWanted || isEncrypted) {
            if (!visitor.passOver())
                return End::Stopped;
            continue;
        }
        const std::optional<QByteArray> content = contentOf(reader.get(), MaxMemberBytes);
        if (!content)
            return faultOf(reader.get());
        const bool isCovered = allowance.take(std::max<qint64>(0, content->size() - stated));
        if (!isCovered || (!isStated && !passRest(reader.get(), allowance)))
            return End::TooLarge;
        if (!visitor.take(number, path, *content))
            return End::Stopped;
    }
}
