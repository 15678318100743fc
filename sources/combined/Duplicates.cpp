#include "Duplicates.h"

#include <QHash>
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

/// One service's kept subtitles of one content that have no partner from another service yet.
struct Waiting
{
    QString service;
    QQueue<qsizetype> places; // indexes in the list of kept subtitles
};

/// Takes the index of the first one of another service off the queue.
std::optional<qsizetype> takePartner(const Subtitle &subtitle, QList<Waiting> &sameContent)
{
    Waiting *first = nullptr;
    for (Waiting &waiting : sameContent) {
        const bool isCandidate = waiting.service != subtitle.service && !waiting.places.isEmpty();
        if (isCandidate && (!first || waiting.places.head() < first->places.head()))
            first = &waiting;
    }
    return first ? std::optional(first->places.dequeue()) : std::nullopt;
}

void addWaiting(const QString &service, qsizetype place, QList<Waiting> &sameContent)
{
    for (Waiting &waiting : sameContent) {
        if (waiting.service == service) {
            waiting.places.enqueue(place);
            return;
        }
    }
    sameContent += Waiting{service, {}};
    sameContent.last().places.enqueue(place);
}
} // namespace

QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles, const std::stop_token &stop)
{
    QList<SubtitlePtr> kept;
    QSet<QString> files;
    QHash<QString, QList<Waiting>> waiting; // by content
    for (const SubtitlePtr &subtitle : subtitles) {
        if (stop.stop_requested())
            return {};
        const QString file = fileKey(*subtitle);
        if (!subtitle->fileID.isEmpty() && files.contains(file))
            continue;
        files.insert(file);
        QList<Waiting> &sameContent = waiting[contentKey(*subtitle)];
        const std::optional<qsizetype> same = takePartner(*subtitle, sameContent);
        if (!same) {
            addWaiting(subtitle->service, kept.size(), sameContent);
            kept += subtitle;
            continue;
        }
        if (subtitle->matchesHash && !kept[*same]->matchesHash)
            kept[*same] = subtitle;
    }
    return kept;
}
