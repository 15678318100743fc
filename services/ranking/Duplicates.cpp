#include "Duplicates.h"

#include <QMultiHash>
#include <QSet>
#include <QStringList>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr QChar Separator(0);

QString fileKey(const Subtitle &subtitle)
{
    return subtitle.service + Separator + subtitle.fileID;
}

/// Release names differ in their separators and extension from place to place.
QString plainRelease(const Subtitle &subtitle)
{
    QString name = subtitle.subFileName.toCaseFolded();
    const QString ending = u'.' + subtitle.subFormat.toCaseFolded();
    if (name.endsWith(ending))
        name.chop(ending.size());
    QString plain;
    for (const QChar c : name)
        plain += c.isLetterOrNumber() ? c : u' ';
    return plain.simplified();
}

QString contentKey(const Subtitle &subtitle)
{
    const QStringList parts{plainRelease(subtitle), subtitle.subLanguageID,
                            QString::number(int{subtitle.hearingImpaired} +
                                            2 * int{subtitle.foreignPartsOnly} +
                                            4 * int{subtitle.machineTranslated})};
    return parts.join(Separator);
}

/// Kept subtitles, by content, whose like of another service has not been met yet.
using Waiting = QMultiHash<QString, qsizetype>;

/// The first of another service among those that have that content.
std::optional<qsizetype> partnerOf(const Subtitle &subtitle, const QString &content, const Waiting &waiting,
                                   const QList<SubtitlePtr> &kept)
{
    std::optional<qsizetype> first;
    for (auto [it, end] = waiting.equal_range(content); it != end; ++it) {
        if (kept[*it]->service != subtitle.service && (!first || *it < *first))
            first = *it;
    }
    return first;
}
} // namespace

QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles)
{
    QList<SubtitlePtr> kept;
    QSet<QString> files;
    Waiting waiting;
    for (const SubtitlePtr &subtitle : subtitles) {
        const QString file = fileKey(*subtitle);
        if (!subtitle->fileID.isEmpty() && files.contains(file))
            continue;
        files.insert(file);
        const QString content = contentKey(*subtitle);
        const std::optional<qsizetype> same = partnerOf(*subtitle, content, waiting, kept);
        if (!same) {
            waiting.insert(content, kept.size());
            kept += subtitle;
            continue;
        }
        waiting.remove(content, *same);
        if (subtitle->matchesHash && !kept[*same]->matchesHash)
            kept[*same] = subtitle;
    }
    return kept;
}
