#include "SubtitleUnpacker.h"

#include <QStringList>

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
using SubtitleUnpacker::Unpacked;
using Failure = SubtitleFile::Failure;

constexpr qsizetype BlockBytes = 64LL * 1024;
constexpr int MaxEntries = 1000;
// Limits of the number and size of unpacked entries that are not subtitles.
constexpr std::size_t MaxTries = 16;
constexpr qsizetype MaxTriedBytes = 2 * SubtitleUnpacker::MaxBytes;

struct ArchiveCloser
{
    void operator()(archive *reader) const { archive_read_free(reader); }
};
using Reader = std::unique_ptr<archive, ArchiveCloser>;

bool open(archive *reader, const QByteArray &bytes)
{
    return archive_read_open_memory(reader, bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
           ARCHIVE_OK;
}

/// The content of the reader's current entry.
Unpacked contentOf(archive *reader, qsizetype limit)
{
    Unpacked result;
    QByteArray block(BlockBytes, Qt::Uninitialized);
    while (true) {
        const la_ssize_t count =
            archive_read_data(reader, block.data(), static_cast<std::size_t>(block.size()));
        if (count == 0)
            return result;
        if (count < 0)
            return {{}, Failure::Damaged};
        result.content.append(block.constData(), count);
        if (result.content.size() > limit)
            return {{}, Failure::TooLarge};
    }
}

qsizetype limitFor(const QByteArray &bytes)
{
    return std::min(SubtitleUnpacker::MaxBytes, bytes.size() * SubtitleUnpacker::MaxRatio);
}

Unpacked gunzip(const QByteArray &bytes)
{
    const Reader reader(archive_read_new());
    archive_read_support_filter_gzip(reader.get());
    archive_read_support_format_raw(reader.get());
    archive_entry *entry = nullptr;
    if (!open(reader.get(), bytes) || archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK)
        return {{}, Failure::Damaged};
    return contentOf(reader.get(), limitFor(bytes));
}

QString baseName(archive_entry *entry)
{
    const char *utf8 = archive_entry_pathname_utf8(entry);
    const char *path = utf8 ? utf8 : archive_entry_pathname(entry);
    QString name = QString::fromUtf8(path ? path : "");
    name.replace(u'\\', u'/');
    return name.section(u'/', -1);
}

/// How likely a file of that name is the subtitle; 0 when it cannot be.
int candidateScore(const QString &name)
{
    static const QStringList extensions{u"xml"_s, u"ttml"_s, u"dfxp"_s, u"tmp"_s, u"mpl"_s, u"txt"_s,
                                        u"smi"_s, u"sub"_s,  u"ssa"_s,  u"vtt"_s, u"ass"_s, u"srt"_s};
    if (name.startsWith(u'.'))
        return 0;
    return static_cast<int>(extensions.indexOf(name.section(u'.', -1).toLower())) + 1;
}

/// A file in an archive that may be the subtitle.
struct Member
{
    int index = 0; // among all entries
    int score = 0;
};

Reader zipReader(const QByteArray &bytes)
{
    Reader reader(archive_read_new());
    // Requires the ZIP directory: without it, skipping an entry would unpack it.
    archive_read_support_format_zip_seekable(reader.get());
    if (!open(reader.get(), bytes))
        reader.reset();
    return reader;
}

bool isReadable(int status)
{
    return status == ARCHIVE_OK || status == ARCHIVE_WARN;
}

/// The candidates, the likeliest first, as far as the archive can be read. `failure` says why there is none.
std::vector<Member> membersOf(const QByteArray &bytes, Failure &failure)
{
    std::vector<Member> members;
    const Reader reader = zipReader(bytes);
    archive_entry *entry = nullptr;
    int status = reader ? ARCHIVE_OK : ARCHIVE_FATAL;
    for (int index = 0; index < MaxEntries && isReadable(status); ++index) {
        status = archive_read_next_header(reader.get(), &entry);
        const int score = isReadable(status) ? candidateScore(baseName(entry)) : 0;
        if (score > 0 && archive_entry_filetype(entry) == AE_IFREG)
            members.push_back({index, score});
    }
    failure = status < ARCHIVE_WARN ? Failure::Damaged : Failure::NoSubtitle;
    std::stable_sort(members.begin(), members.end(),
                     [](const Member &one, const Member &other) { return one.score > other.score; });
    return members;
}

/// Opens the archive again for each member, because a reader stops at damage.
Unpacked extracted(const QByteArray &bytes, const Member &member)
{
    const Reader reader = zipReader(bytes);
    archive_entry *entry = nullptr;
    for (int index = 0; index <= member.index; ++index) {
        if (!reader || !isReadable(archive_read_next_header(reader.get(), &entry)))
            return {{}, Failure::Damaged};
    }
    if (archive_entry_is_data_encrypted(entry) != 0)
        return {{}, Failure::UnknownArchive};
    return contentOf(reader.get(), limitFor(bytes));
}

Unpacked unzip(const QByteArray &bytes, const SubtitleUnpacker::Check &isGood)
{
    Failure failure = Failure::None;
    std::vector<Member> members = membersOf(bytes, failure);
    if (members.empty())
        return {{}, failure};
    members.resize(std::min(members.size(), MaxTries));
    std::optional<Unpacked> likeliest;
    qsizetype tried = 0;
    for (const Member &member : members) {
        if (tried > MaxTriedBytes)
            break;
        Unpacked found = extracted(bytes, member);
        if (found.failure == Failure::None && isGood(found.content))
            return found;
        tried += found.failure == Failure::TooLarge ? limitFor(bytes) : found.content.size();
        // Among several failures, the password is reported, which explains the others.
        if (!likeliest || found.failure == Failure::UnknownArchive)
            likeliest = std::move(found);
    }
    return *likeliest;
}
} // namespace

Unpacked SubtitleUnpacker::unpack(const QByteArray &bytes, const Check &isGood)
{
    if (bytes.startsWith("\x1f\x8b"))
        return gunzip(bytes);
    if (bytes.startsWith("PK\x03\x04"))
        return unzip(bytes, isGood);
    if (bytes.startsWith("Rar!\x1a") || bytes.startsWith("7z\xbc\xaf\x27\x1c"))
        return {{}, Failure::UnknownArchive};
    if (bytes.size() > MaxBytes)
        return {{}, Failure::TooLarge};
    return {bytes};
}
