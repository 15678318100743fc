// Archives as they come from a server and from a folder: the work stays in proportion to the bytes that came
// in.
#include "Oracle.h"

#include <media/subtitles/SubtitleUnpacker.h>
#include <sources/catalogue/import/ArchiveMembers.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

namespace
{
void unpackDownload(const QByteArray &bytes)
{
    qint64 judged = 0;
    const auto isGood = [&judged](const QByteArray &content) {
        judged += content.size();
        return content.contains("-->");
    };
    const SubtitleUnpacker::Unpacked unpacked = SubtitleUnpacker::unpack(bytes, isGood);
    require(unpacked.content.size() <= SubtitleUnpacker::MaxBytes,
            "a member is no larger than a subtitle may be");
    require(unpacked.content.size() <=
                std::max<qsizetype>(bytes.size() * SubtitleUnpacker::MaxRatio, bytes.size()),
            "a member grows by no more than the ratio");
    require(judged <=
                4 * std::max<qint64>(SubtitleUnpacker::MaxBytes, bytes.size() * SubtitleUnpacker::MaxRatio),
            "all members together are bounded");
}

void visitFile(const QByteArray &bytes)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("archive"));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size(),
            "the temporary file is written");
    file.close();
    qint64 taken = 0;
    const ArchiveMembers::Visitor visitor{[](qint64 number, const QString &) { return number % 2 == 0; },
                                          [&taken](qint64, const QString &, const QByteArray &content) {
                                              require(content.size() <= ArchiveMembers::MaxMemberBytes + 1,
                                                      "a member is cut behind its limit");
                                              taken += content.size();
                                              return true;
                                          },
                                          [] { return true; }};
    ArchiveMembers::visit(path, visitor);
    require(taken <= std::max(ArchiveMembers::AlwaysAllowedBytes, bytes.size() * ArchiveMembers::MaxRatio) +
                         ArchiveMembers::MaxMemberBytes + 1,
            "the sum of the members is bounded");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const TimeLimit limit(4000);
    const QByteArray bytes = bytesOf(data, size);
    unpackDownload(bytes);
    visitFile(bytes);
    return 0;
}
