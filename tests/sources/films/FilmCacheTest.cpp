#include "FilmFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class FilmCacheTest final : public FilmFixture
{
    Q_OBJECT

private Q_SLOTS:
    void answersAreKeptWithoutTheKey()
    {
        settings.key = QString::fromLatin1(FilmStandIn::Key);
        for (int start = 1; start <= 2; ++start) {
            restart();
            QVERIFY(!posterOf()->value().isNull());
        }
        QCOMPARE(requests().size(), 2); // find and configuration, once
        QCOMPARE(imageRequests().size(), 1);
        const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files);
        QCOMPARE(files.size(), 3);
        for (const QFileInfo &file : files) {
            QFile kept(file.filePath());
            QVERIFY(kept.open(QIODevice::ReadOnly));
            QVERIFY(!kept.readAll().contains(FilmStandIn::Key));
        }
    }

    void staleAnswersAreAskedAboutAgain()
    {
        posterOf()->value();
        pass(31 * 24h);
        QVERIFY(!posterOf()->value().isNull());
        QVERIFY(!imageRequests().constLast().header("If-None-Match").isEmpty());
        // "Not changed" makes it fresh once more.
        pass(20 * 24h);
        posterOf()->value();
        QCOMPARE(imageRequests().size(), 2);
    }

    void serversLifetimeIsObeyed()
    {
        find()->value();
        pass(59min);
        find()->value();
        QCOMPARE(requests().size(), 1);
        pass(2min);
        find()->value();
        QCOMPARE(requests().size(), 2);
    }

    void uncacheableAnswersAreNotKept()
    {
        standIn->select(u"film-no-store"_s);
        for (int time = 1; time <= 2; ++time) {
            QCOMPARE(find()->value().movieResults.size(), 1);
            QCOMPARE(requests().size(), time);
            QVERIFY(requests().constLast().header("If-None-Match").isEmpty());
        }
        QCOMPARE(QDir(folder).entryInfoList(QDir::Files).size(), 0);
    }

    void changedPostersReplaceTheOldOnes()
    {
        standIn->select(u"poster-changes"_s);
        posterOf()->value();
        QByteArray lastTag;
        for (int time = 2; time <= 3; ++time) {
            pass(31 * 24h);
            QVERIFY(!posterOf()->value().isNull());
            QCOMPARE(imageRequests().size(), time);
            // Asked with the tag of the one that came last.
            const QByteArray tag = imageRequests().constLast().header("If-None-Match");
            QVERIFY(!tag.isEmpty() && tag != lastTag);
            lastTag = tag;
        }
    }

    void staleAnswersServeUntilTheTermsForbidIt()
    {
        posterOf()->value();
        standIn->stop();
        pass(60 * 24h);
        QVERIFY(!posterOf()->value().isNull());
        pass(121 * 24h);
        QCOMPARE(kindIn(*find()), ServiceFailure::Unavailable);
    }

    void oldAnswersHelpWhenAnotherServerAnswers()
    {
        find()->value();
        pass(8 * 24h);
        standIn->select(u"html@find"_s);
        QCOMPARE(find()->value().movieResults.size(), 1);
        QCOMPARE(requests().size(), 2);
    }

    void keptAnswerThatCannotBeReadIsNone()
    {
        const QDateTime date = clock->date();
        const QString key = settings.cacheKey(
            u"/find/tt9000002"_s, {{u"external_source"_s, u"imdb_id"_s}, {u"language"_s, u"en-US"_s}});
        DiskCache(folder, 24h).store(key, {"{}", "tag", date, date.addDuration(24h)});
        QCOMPARE(find()->value().movieResults.size(), 1);
        QVERIFY(requests().constFirst().header("If-None-Match").isEmpty());
    }

    void otherLanguagesAreOtherAnswers()
    {
        find()->value();
        films->preferredLanguage = u"de"_s;
        find()->value();
        QCOMPARE(requests().size(), 2);
    }
};

PLOVENDIX_TEST(FilmCacheTest)
#include "FilmCacheTest.moc"
