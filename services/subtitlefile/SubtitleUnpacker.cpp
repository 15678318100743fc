#include "SubtitleUnpacker.h"

#include <QStringList>

#include <archive.h>
#include <archive_entry.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
using SubtitleUnpacker::Failure;
using SubtitleUnpacker::Unpacked;

constexpr qsizetype BlockBytes = 64LL * 1024;
constexpr int MaxEntries = 1000;

struct ArchiveCloser
{
    void operator()(archive *reader) const { archive_read_free(reader); }
};
using Reader = std::unique_ptr<archive, ArchiveCloser>;

bool startsWith(const QByteArray &bytes, const char *magic)
{
    return bytes.startsWith(QByteArray::fromHex(magic));
}

/// The content of the entry the reader stands at.
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
            return {{}, {}, Failure::Damaged};
        result.content.append(block.constData(), count);
        if (result.content.size() > limit)
            return {{}, {}, Failure::TooLarge};
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
    if (archive_read_open_memory(reader.get(), bytes.constData(), static_cast<std::size_t>(bytes.size())) !=
            ARCHIVE_OK ||
        archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK)
        return {{}, {}, Failure::Damaged};
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

/// How likely a file of that name is the subtitle; 0 for what is none.
int promise(const QString &name)
{
    static const QStringList extensions{u"txt"_s, u"smi"_s, u"sub"_s, u"ssa"_s, u"vtt"_s, u"ass"_s, u"srt"_s};
    if (name.startsWith(u'.'))
        return 0;
    return static_cast<int>(extensions.indexOf(name.section(u'.', -1).toLower())) + 1;
}

Unpacked unzip(const QByteArray &bytes)
{
    const Reader reader(archive_read_new());
    archive_read_support_format_zip(reader.get());
    if (archive_read_open_memory(reader.get(), bytes.constData(), static_cast<std::size_t>(bytes.size())) !=
        ARCHIVE_OK)
        return {{}, {}, Failure::Damaged};
    Unpacked best{{}, {}, Failure::NothingInside};
    int bestPromise = 0;
    archive_entry *entry = nullptr;
    for (int count = 0; count < MaxEntries; ++count) {
        const int status = archive_read_next_header(reader.get(), &entry);
        if (status == ARCHIVE_EOF)
            return best;
        if (status != ARCHIVE_OK && status != ARCHIVE_WARN)
            return bestPromise > 0 ? best : Unpacked{{}, {}, Failure::Damaged};
        const QString name = baseName(entry);
        if (archive_entry_filetype(entry) != AE_IFREG || promise(name) <= bestPromise)
            continue;
        const Unpacked found = contentOf(reader.get(), limitFor(bytes));
        if (found.failure != Failure::None)
            return found;
        best = {found.content, name, Failure::None};
        bestPromise = promise(name);
    }
    return best;
}
} // namespace

Unpacked SubtitleUnpacker::unpack(const QByteArray &bytes)
{
    if (startsWith(bytes, "1f8b"))
        return gunzip(bytes);
    if (startsWith(bytes, "504b0304"))
        return unzip(bytes);
    if (startsWith(bytes, "526172211a") || startsWith(bytes, "377abcaf271c"))
        return {{}, {}, Failure::UnknownArchive};
    if (bytes.size() > MaxBytes)
        return {{}, {}, Failure::TooLarge};
    return {bytes, {}, Failure::None};
}
