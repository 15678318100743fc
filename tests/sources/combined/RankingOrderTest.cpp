#include <sources/combined/Ranking.h>
#include <tests/support/TestMain.h>

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
using Change = std::function<void(Subtitle &)>;

SubtitlePtr subtitle(const QString &name, const Change &change = {})
{
    auto made = std::make_shared<Subtitle>();
    made->subFileName = name;
    made->subFormat = u"srt"_s;
    made->subLanguageID = u"eng"_s;
    made->service = u"rest"_s;
    if (change)
        change(*made);
    return made;
}

QStringList names(const QList<SubtitlePtr> &subtitles)
{
    QStringList result;
    for (const SubtitlePtr &one : subtitles)
        result += one->subFileName;
    return result;
}
} // namespace

class RankingOrderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachRuleOutweighsTheNext()
    {
        const QString video = u"Paper.Lighthouse.2019.1080p.WEB.x264-ABC.mkv"_s;
        const QList<SubtitlePtr> expected{
            subtitle(u"Other.Name.CAM"_s, [](Subtitle &s) { s.matchesHash = true; }),
            subtitle(u"Paper.Lighthouse.2019.1080p.WEB.x264-ABC"_s),
            subtitle(u"Paper.Lighthouse.2019.1080p.WEB.x264-XYZ"_s),
            subtitle(u"Paper.Lighthouse.2019.720p.BluRay-QQQ"_s, [](Subtitle &s) { s.trusted = true; }),
            subtitle(u"Paper.Lighthouse.2019.720p.BluRay-QQR"_s, [](Subtitle &s) { s.downloads = 9000; }),
            subtitle(u"Paper.Lighthouse.2019.720p.BluRay-QQS"_s, [](Subtitle &s) { s.downloads = 10; }),
            subtitle(u"Paper.Lighthouse.2019.1080p.WEB.x264-ABC.machine"_s,
                     [](Subtitle &s) { s.machineTranslated = true; }),
        };
        QList<SubtitlePtr> shuffled{expected.rbegin(), expected.rend()};
        QCOMPARE(names(ranked(shuffled, video, {})), names(expected));
        std::rotate(shuffled.begin(), shuffled.begin() + 3, shuffled.end());
        QCOMPARE(names(ranked(shuffled, video, {})), names(expected));
    }

    void preferencesTurnTheOrder_data()
    {
        QTest::addColumn<int>("mark");
        QTest::addColumn<QString>("preference");
        QTest::addColumn<QStringList>("order");
        const char *marks[] = {"hearing impaired", "foreign parts only", "machine translated"};
        for (int mark = 0; mark < 3; ++mark) {
            QTest::addRow("%s, preferred", marks[mark])
                << mark << u"preferred"_s << QStringList{u"marked"_s, u"plain"_s};
            QTest::addRow("%s, avoided", marks[mark])
                << mark << u"avoided"_s << QStringList{u"plain"_s, u"marked"_s};
            // The marked one has more downloads.
            QTest::addRow("%s, neutral", marks[mark])
                << mark << u"neutral"_s << QStringList{u"marked"_s, u"plain"_s};
        }
    }
    void preferencesTurnTheOrder()
    {
        QFETCH(const int, mark);
        QFETCH(const QString, preference);
        QFETCH(const QStringList, order);
        RankingPreferences preferences;
        Preference RankingPreferences::*kinds[] = {&RankingPreferences::hearingImpaired,
                                                   &RankingPreferences::foreignPartsOnly,
                                                   &RankingPreferences::machineTranslated};
        bool Subtitle::*marks[] = {&Subtitle::hearingImpaired, &Subtitle::foreignPartsOnly,
                                   &Subtitle::machineTranslated};
        preferences.*kinds[mark] = preferenceFromText(preference);
        const QList<SubtitlePtr> given{
            subtitle(u"plain"_s, [&](Subtitle &s) { s.downloads = preference == u"preferred"_s ? 500 : 5; }),
            subtitle(u"marked"_s, [&](Subtitle &s) {
                s.*marks[mark] = true;
                s.downloads = 50;
            })};
        QCOMPARE(names(ranked(given, {}, preferences)), order);
    }

    void frameRateInTheNameCounts()
    {
        const QList<SubtitlePtr> given{subtitle(u"one"_s, [](Subtitle &s) { s.framesPerSecond = 23.976; }),
                                       subtitle(u"two"_s, [](Subtitle &s) { s.framesPerSecond = 25.0; })};
        QCOMPARE(names(ranked(given, u"Film.25fps.mkv"_s, {})), (QStringList{u"two"_s, u"one"_s}));
        QCOMPARE(names(ranked(given, u"Film.23.976fps.mkv"_s, {})), (QStringList{u"one"_s, u"two"_s}));
    }

    void equalOnesKeepTheirOrder()
    {
        QList<SubtitlePtr> given;
        for (int i = 0; i < 100; ++i)
            given += subtitle(QString::number(i));
        QCOMPARE(names(ranked(given, u"Film.mkv"_s, {})), names(given));
        QCOMPARE(ranked({}, {}, {}), QList<SubtitlePtr>());
    }

    void oneServicesFileAppearsOnce()
    {
        const auto withId = [](const QString &id) { return [id](Subtitle &s) { s.fileID = id; }; };
        const QList<SubtitlePtr> given{subtitle(u"a"_s, withId(u"1"_s)), subtitle(u"a"_s, withId(u"2"_s)),
                                       subtitle(u"b"_s, withId(u"1"_s))};
        QCOMPARE(names(withoutDuplicates(given)), (QStringList{u"a"_s, u"a"_s}));
    }

    void twoServicesSameReleaseAppearsOnce()
    {
        const SubtitlePtr ours =
            subtitle(u"Paper.Lighthouse.2019-ABC.srt"_s, [](Subtitle &s) { s.service = u"catalogue"_s; });
        const SubtitlePtr theirs = subtitle(u"paper lighthouse 2019 ABC"_s);
        const SubtitlePtr exact =
            subtitle(u"paper lighthouse 2019 ABC"_s, [](Subtitle &s) { s.matchesHash = true; });
        const SubtitlePtr german =
            subtitle(u"paper lighthouse 2019 ABC"_s, [](Subtitle &s) { s.subLanguageID = u"ger"_s; });
        const SubtitlePtr marked =
            subtitle(u"paper lighthouse 2019 ABC"_s, [](Subtitle &s) { s.hearingImpaired = true; });
        QCOMPARE(withoutDuplicates({ours, theirs}), QList{ours});
        QCOMPARE(withoutDuplicates({ours, exact}), QList{exact});
        QCOMPARE(withoutDuplicates({ours, german, marked}), (QList{ours, german, marked}));
    }

    void rowsOfOneNameAreGoneThroughOnce()
    {
        // So many that comparing each with each would outlast the limit of a test.
        constexpr int Count = 150'000;
        QList<SubtitlePtr> given;
        for (int i = 0; i < Count; ++i)
            given +=
                subtitle(u"Paper.Lighthouse.2019-ABC"_s, [i](Subtitle &s) { s.fileID = QString::number(i); });
        given += subtitle(u"Paper.Lighthouse.2019-ABC"_s, [](Subtitle &s) { s.service = u"catalogue"_s; });
        QCOMPARE(withoutDuplicates(given).size(), Count);
    }

    void searchGivesTheBestTwoThousand()
    {
        QList<SubtitlePtr> given;
        for (int i = 0; i < 2345; ++i)
            given += subtitle(QString::number(i), [i](Subtitle &s) { s.downloads = i; });
        given += given.constFirst();
        const QueryResult best = bestRows(given, {}, {});
        QCOMPARE(best.subtitles->size(), 2000);
        QCOMPARE(best.subtitles->constFirst()->subFileName, u"2344"_s);
        QCOMPARE(best.leftOut, 346);
        QCOMPARE(bestRows(given.first(2000), {}, {}).leftOut, 0);
    }

    void stopEndsTheWork()
    {
        std::stop_source stop;
        const QList<SubtitlePtr> given{subtitle(u"a"_s), subtitle(u"b"_s)};
        QCOMPARE(withoutDuplicates(given, stop.get_token()).size(), 2);
        QCOMPARE(ranked(given, {}, {}, stop.get_token()).size(), 2);
        stop.request_stop();
        QVERIFY(withoutDuplicates(given, stop.get_token()).isEmpty());
        QVERIFY(ranked(given, {}, {}, stop.get_token()).isEmpty());
    }

    void oneFileHidesOneOfTheOtherServiceAlone()
    {
        const auto from = [](const QString &service, const QString &id) {
            return subtitle(u"Paper.Lighthouse.2019-ABC"_s, [=](Subtitle &s) {
                s.service = service;
                s.fileID = id;
            });
        };
        const SubtitlePtr ours = from(u"catalogue"_s, u"1"_s);
        const SubtitlePtr alsoOurs = from(u"catalogue"_s, u"2"_s);
        const QList<SubtitlePtr> theirs{from(u"rest"_s, u"1"_s), from(u"rest"_s, u"2"_s),
                                        from(u"rest"_s, u"3"_s)};
        QCOMPARE(withoutDuplicates(QList{ours} + theirs), (QList{ours, theirs[1], theirs[2]}));
        QCOMPARE(withoutDuplicates(QList{ours, alsoOurs} + theirs), (QList{ours, alsoOurs, theirs[2]}));
    }
};

PLOVENDIX_PLAIN_TEST(RankingOrderTest)
#include "RankingOrderTest.moc"
