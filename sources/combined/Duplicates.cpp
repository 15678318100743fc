#include "Ranking.h"

#include <QHash>
#include <QMap>
#include <QQueue>
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

/// Services write release names with different separators and extensions.
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

/// By service, the kept subtitles of one content that have no partner from another service yet, as indexes in
/// the list of kept ones.
using Waiting = QMap<QString, QQueue<qsizetype>>;

/// Takes the index of the first one of another service off its queue.
std::optional<qsizetype> takePartner(const Subtitle &subtitle, Waiting &sameContent)
{
    QQueue<qsizetype> *first = nullptr;
    for (auto it = sameContent.begin(); it != sameContent.end(); ++it) {
        const bool isCandidate = it.key() != subtitle.service && !it->isEmpty();
        if (isCandidate && (!first || it->head() < first->head()))
            first = &*it;
    }
    return first ? std::optional(first->dequeue()) : std::nullopt;
}
} // namespace

QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles, const std::stop_token &stop)
{
    QList<SubtitlePtr> kept;
    QSet<QString> files;
    QHash<QString, Waiting> waiting; // by content
    for (const SubtitlePtr &subtitle : subtitles) {
        if (stop.stop_requested())
            return {};
        const QString file = fileKey(*subtitle);
        if (!subtitle->fileID.isEmpty() && files.contains(file))
            continue;
        files.insert(file);
        Waiting &sameContent = waiting[contentKey(*subtitle)];
        const std::optional<qsizetype> same = takePartner(*subtitle, sameContent);
        if (!same) {
            sameContent[subtitle->service].enqueue(kept.size());
            kept += subtitle;
        } else if (subtitle->matchesHash && !kept[*same]->matchesHash) {
            kept[*same] = subtitle;
        }
    }
    return kept;
}
