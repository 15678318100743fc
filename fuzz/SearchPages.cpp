// Pages of the subtitle service through duplicates and ranking: bounded in time, each row once, no row
// invented.
#include "Oracle.h"

#include <sources/combined/Ranking.h>
#include <sources/online/RestPage.h>

#include <QSet>

using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const TimeLimit limit(500 + static_cast<double>(size) / 20);
    static const QUrl base(u"https://api.example/v1"_s);
    static const Locale locale(u"en"_s);
    const auto page = RestPage::read(bytesOf(data, size), base, locale);
    if (!page)
        return 0;

    // Several copies, as a server sends them that repeats its pages.
    const QList<SubtitlePtr> found = page->subtitles + page->subtitles;
    const QList<SubtitlePtr> once = withoutDuplicates(found);
    require(once.size() <= page->subtitles.size(), "a repeated file appears once");
    require(withoutDuplicates(once).size() == once.size(), "no duplicate is left");
    const QSet<SubtitlePtr> known(found.cbegin(), found.cend());
    const QueryResult best = bestRows(found, u"Paper.Lighthouse.2019.1080p.WEB-ABC.mkv"_s, {});
    require(best.subtitles->size() + best.leftOut == once.size(), "each row is shown or counted as left out");
    for (const SubtitlePtr &row : *best.subtitles)
        require(known.contains(row), "no row is invented");
    return 0;
}
