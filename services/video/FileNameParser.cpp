#include "FileNameParser.h"

#include "NameRules.h"

#include <platform/FileManager.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int FirstYear = 1900;
constexpr int LastYear = 2049;

bool isYear(const QString &word)
{
    bool isNumber = false;
    const int value = word.size() == 4 ? word.toInt(&isNumber) : 0;
    return isNumber && value >= FirstYear && value <= LastYear;
}

/// Where the words about the file begin: at a strong word, or at the first of the weak ones that lead up to
/// it.
void findTechnicalWords(const NameTokens &name, NameFacts &facts)
{
    qsizetype run = -1;
    for (qsizetype i = facts.titleBegin + 1; i < facts.titleEnd; ++i) {
        const WordStrength strength = name[i].kind.strength;
        if (strength == WordStrength::None) {
            run = -1;
            continue;
        }
        run = run < 0 ? i : run;
        if (strength == WordStrength::Strong)
            return facts.endTitleAt(run);
    }
}

/// The last year before the technical words; one that opens the name is its title.
void findYear(const NameTokens &name, NameFacts &facts)
{
    for (qsizetype i = std::min(facts.titleEnd, name.count()) - 1; i > facts.titleBegin; --i) {
        if (!isYear(name[i].word))
            continue;
        facts.year = name[i].word.toInt();
        return facts.endTitleAt(i);
    }
}

QString titleOf(const NameTokens &name, const NameFacts &facts)
{
    if (facts.titleEnd <= facts.titleBegin)
        return {};
    const qsizetype begin = name[facts.titleBegin].begin;
    QString title = name.name().mid(begin, name[facts.titleEnd - 1].end - begin);
    for (QChar &c : title) {
        if (c == u'.' || c == u'_' || c.category() == QChar::Other_Control)
            c = u' ';
    }
    return title.simplified();
}

QString searchStringOf(const VideoFileComponents &said, const QString &name)
{
    if (said.title.isEmpty())
        return name.simplified();
    if (said.season && said.episode)
        return u"%1 S%2E%3"_s.arg(said.title)
            .arg(*said.season, 2, 10, '0'_L1)
            .arg(*said.episode, 2, 10, '0'_L1);
    return said.year ? u"%1 %2"_s.arg(said.title).arg(*said.year) : said.title;
}
} // namespace

VideoFileComponents parseVideoName(const QString &text)
{
    const NameTokens name(text);
    NameFacts facts;
    facts.titleEnd = name.count();
    for (const NameRule &rule : episodeRules()) {
        if (rule.apply(name, facts))
            break;
    }
    findTechnicalWords(name, facts);
    findYear(name, facts);

    VideoFileComponents said;
    said.title = titleOf(name, facts);
    said.year = facts.year;
    said.season = facts.season;
    said.episode = facts.episode;
    said.searchString = searchStringOf(said, name.name());
    return said;
}

VideoFileComponents videoFileComponents(const QUrl &url)
{
    return parseVideoName(FileManager::displayName(url));
}
