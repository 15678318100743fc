#include "Duplicates.h"

#include <QHash>
#include <QStringList>

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
} // namespace

QList<SubtitlePtr> withoutDuplicates(const QList<SubtitlePtr> &subtitles)
{
    QList<SubtitlePtr> kept;
    QHash<QString, qsizetype> byFile;
    QHash<QString, qsizetype> byContent;
    for (const SubtitlePtr &subtitle : subtitles) {
        const bool hasId = !subtitle->fileID.isEmpty();
        if (hasId && byFile.contains(fileKey(*subtitle)))
            continue;
        const auto same = byContent.constFind(contentKey(*subtitle));
        // Within one service, releases of the same name are different files by different people.
        if (same != byContent.cend() && kept[*same]->service != subtitle->service) {
            if (subtitle->matchesHash && !kept[*same]->matchesHash)
                kept[*same] = subtitle;
        } else {
            byContent.insert(contentKey(*subtitle), kept.size());
            kept += subtitle;
        }
        if (hasId)
            byFile.insert(fileKey(*subtitle), byContent.value(contentKey(*subtitle)));
    }
    return kept;
}
