#include "ReleaseAgreement.h"

#include "NameTokens.h"

#include <QSet>

namespace
{
int weight(WordKind kind)
{
    switch (kind) {
    case WordKind::Source:
        return 8;
    case WordKind::Edition:
        return 6;
    case WordKind::Resolution:
        return 4;
    case WordKind::VideoCodec:
        return 2;
    case WordKind::Audio:
    case WordKind::Remark:
        return 1;
    case WordKind::None:
    case WordKind::Language: // of the sound, which says nothing about the subtitle
        return 0;
    }
    return 0;
}

constexpr int GroupWeight = 16;

/// Who made the release: the word after the last tight hyphen, "GRP" of "Film.2019.x264-GRP".
QString groupOf(const NameTokens &name)
{
    const qsizetype last = name.count() - 1;
    if (last < 1 || !name.isJoinedBefore(last, u'-') || name[last].isAboutFile())
        return {};
    return name[last].word;
}

QSet<QString> wordsOfKind(const NameTokens &name, WordKind kind)
{
    QSet<QString> words;
    for (qsizetype i = 0; i < name.count(); ++i) {
        if (name[i].kind == kind)
            words += name[i].known;
    }
    return words;
}
} // namespace

int releaseAgreement(const QString &release, const QString &videoName)
{
    const NameTokens ours(release);
    const NameTokens theirs(videoName);
    int agreement = 0;
    for (const WordKind kind : {WordKind::Source, WordKind::Edition, WordKind::Resolution,
                                WordKind::VideoCodec, WordKind::Audio, WordKind::Remark}) {
        if (wordsOfKind(ours, kind).intersects(wordsOfKind(theirs, kind)))
            agreement += weight(kind);
    }
    const QString group = groupOf(ours);
    if (!group.isEmpty() && group == groupOf(theirs))
        agreement += GroupWeight;
    return agreement;
}
