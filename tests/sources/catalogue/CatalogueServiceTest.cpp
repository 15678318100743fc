#include "CatalogueClient.h"
#include "CatalogueFixture.h"

#include <base/MainQueue.h>
#include <media/names/VideoNames.h>
#include <sources/catalogue/CatalogueSearch.h>
#include <tests/support/TestMain.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <atomic>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// What queries and downloads of two catalogues give, and when.
class CatalogueServiceTest : public QObject
{
    Q_OBJECT

    using Presence = CataloguePlace::Presence;

    Sandbox m_sandbox;
    const QString m_starter = m_sandbox.path(u"starter.sqlite"_s);
    const QString m_own = m_sandbox.path(u"own.sqlite"_s);
    const std::shared_ptr<VideoNames> m_names = std::make_shared<VideoNames>();
    std::shared_ptr<CatalogueService> m_service; // over both

    CatalogueFixture own() const { return CatalogueFixture(m_sandbox, u"own.sqlite"_s); }
    std::shared_ptr<CatalogueService> serviceOf(const QList<CataloguePlace> &places) const
    {
        return std::make_shared<CatalogueService>(places, m_names,
                                                  DownloadFolder(m_sandbox.path(u"downloads"_s)));
    }
    QStringList ask(const QString &text, const QString &language = u"eng"_s) const
    {
        return ::ask(*m_service, textQuery(text, language));
    }
    SubtitlePtr exactOne() const { return found(*m_service, videoQuery(Hash, Size)).value(0); }

private Q_SLOTS:
    void init()
    {
        CatalogueFixture starter(m_sandbox, u"starter.sqlite"_s);
        starter.film({u"Harbour Lights"_s}, 2019)
            .subtitle(u"Lights.DVDRip"_s, 9000)
            .subtitle(u"Lights.1080p.BluRay"_s, 20)
            .subtitle(u"Lights.exact"_s, 1)
            .madeFor(Hash, Size)
            .subtitle(u"Lights.web"_s, 500)
            .subtitle(u"Luzes"_s, 3, "pob");
        starter.film({u"Harbour Lights Revisited"_s}, 2022).subtitle(u"Revisited"_s, 99999);
        starter.write();
        QFile::remove(m_own);
        MainQueue::shared().clear();
        m_service = serviceOf({{m_starter, Presence::Required}, {m_own, Presence::Optional}});
    }

    void exactMatchesComeFirst()
    {
        QCOMPARE(
            ::ask(*m_service, videoQuery(Hash, Size)),
            QStringList({u"Lights.exact"_s, u"Lights.DVDRip"_s, u"Lights.web"_s, u"Lights.1080p.BluRay"_s}));
    }

    void closerTitleComesFirst()
    {
        QCOMPARE(ask(u"harbour lights"_s).last(), u"Revisited"_s);
        QCOMPARE(ask(u"revisited harbour"_s), QStringList(u"Revisited"_s));
    }

    void resultsCarryWhatDeliveryAndListNeed()
    {
        const SubtitlePtr found = ::found(*m_service, textQuery(u"lights"_s, u"pt-BR"_s)).value(0);
        QVERIFY(found);
        QCOMPARE(found->subFileName, u"Luzes"_s);
        QCOMPARE(found->subLanguageID, u"pob"_s);
        QCOMPARE(found->languageName, u"Portuguese (Brazil)"_s);
        QCOMPARE(found->service, CatalogueService::name());
        QVERIFY(!found->fileID.isEmpty());
    }

    void duplicatesAppearOnce()
    {
        own()
            .film({u"Twin Ferries"_s}, 2000)
            .subtitle(u"Ferries.1080p"_s, 5, "eng", "same")
            .madeFor(Hash, Size + 1)
            .subtitle(u"Ferries.720p"_s, 50, "eng", "same")
            .madeFor(Hash, Size + 1)
            .subtitle(u"Ferries.C"_s, 2, "eng", "other")
            .subtitle(u"Ferries.D"_s, 1, "ger", "same")
            .write();
        QCOMPARE(ask(u"twin ferries"_s), QStringList({u"Ferries.720p"_s, u"Ferries.C"_s}));
        QCOMPARE(ask(u"twin ferries 1080p"_s), QStringList({u"Ferries.1080p"_s, u"Ferries.C"_s}));
        // A hash alone does not tell the two apart; the video's name does.
        const QList<Arg> video = videoQuery(Hash, Size + 1);
        QCOMPARE(::ask(*m_service, video).first(), u"Ferries.720p"_s);
        m_names->remember({Hash, Size + 1}, u"Ferries.1080p.mkv"_s);
        QCOMPARE(::ask(*m_service, video).first(), u"Ferries.1080p"_s);
        // The same file searched twice, as a catalogue and its copy.
        const auto doubled = serviceOf({{m_own, Presence::Required}, {m_own, Presence::Required}});
        QCOMPARE(::ask(*doubled, textQuery(u"twin ferries"_s)).size(), 2);
    }

    void ownCatalogueIsSeenOnceItExists()
    {
        QCOMPARE(ask(u"tin orchard"_s), QStringList());
        own().film({u"The Tin Orchard"_s}, 2021).subtitle(u"Orchard"_s, 1).write();
        QCOMPARE(ask(u"tin orchard"_s), QStringList(u"Orchard"_s));
    }

    void rowsOfOneCatalogueCoverTheOthersFailure()
    {
        m_sandbox.writeFile(u"own.sqlite"_s, "no catalogue");
        QVERIFY(ask(u"harbour lights"_s).contains(u"Lights.web"_s));
        QVERIFY(ask(u"nothing here"_s).first().contains(m_own));
        QVERIFY(QFile::remove(m_starter));
        QVERIFY(ask(u"harbour lights"_s).first().contains(m_starter)); // the first failure counts
    }

    void oddArgumentsFindNothing_data()
    {
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("hash");
        QTest::newRow("size is no number") << u"much"_s << Hash;
        QTest::newRow("negative size") << u"-4096"_s << Hash;
        QTest::newRow("size beyond 64 bits") << u"99999999999999999999999"_s << Hash;
        QTest::newRow("short hash") << QString::number(Size) << Hash.left(15);
        QTest::newRow("hash with other letters") << QString::number(Size) << u"0011223344556gff"_s;
        QTest::newRow("line feed after the hash") << QString::number(Size) << Hash + u'\n';
        QTest::newRow("empty") << QString() << QString();
    }
    void oddArgumentsFindNothing()
    {
        QFETCH(const QString, size);
        QFETCH(const QString, hash);
        const QList<Arg> args{{Param::byteSize, size}, {Param::movieHash, hash}, {Param::language, u"eng"_s}};
        QVERIFY(!CatalogueRequest::from(args).video);
        QCOMPARE(::ask(*m_service, args), QStringList());
    }

    void unknownLanguageIsNotSearchedInAnother()
    {
        QCOMPARE(ask(u"harbour lights"_s, u"qqq"_s), QStringList());
        QCOMPARE(ask(u"harbour lights"_s, u"?"_s), QStringList());
    }

    void completionComesAfterTheCallOnAnotherThread()
    {
        Answers<QueryResult> answers;
        m_service->query(textQuery(u"lights"_s), answers.completion());
        QCOMPARE(answers.count(), 0);
        QTRY_COMPARE(answers.count(), 1);
        QVERIFY(answers.lastThread() != std::this_thread::get_id());
    }

    void cancelledQueriesAreNeverAnswered()
    {
        Answers<QueryResult> cancelled;
        for (int i = 0; i < 50; ++i)
            m_service->query(textQuery(u"lights"_s), cancelled.completion());
        m_service->cancelQueryTask();
        // The worker goes in order, so this answer comes after all that could have come before.
        QVERIFY(!ask(u"lights"_s).isEmpty());
        QCOMPARE(cancelled.count(), 0);
    }

    void completionMayHoldTheLastReference()
    {
        std::atomic<bool> isGone = false;
        const std::weak_ptr<CatalogueService> weak = m_service;
        CatalogueService &asked = *m_service;
        asked.query(textQuery(u"lights"_s), [&isGone, held = std::move(m_service)](const auto &) mutable {
            held.reset();
            isGone = true;
        });
        QTRY_VERIFY(isGone && weak.expired());
    }

    void queriesOfAServiceThatIsGoneAreNotAnswered()
    {
        Answers<QueryResult> answers;
        m_service->query(textQuery(u"lights"_s), answers.completion());
        m_service.reset();
        MainQueue::shared().runUntilIdle();
        QCOMPARE(answers.count(), 0);
    }

    void downloadWritesACopy()
    {
        const Result<QUrl> first = fetch(*m_service, exactOne());
        const Result<QUrl> second = fetch(*m_service, exactOne());
        QVERIFY(first && second);
        QCOMPARE(first->fileName(), u"Lights.exact.srt"_s);
        QVERIFY(*first != *second);
        QVERIFY(first->toLocalFile().startsWith(m_sandbox.path(u"downloads/"_s)));
        QFile file(first->toLocalFile());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("Lights.exacteng1"));
    }

    void downloadIsNotCancelledWithTheQueries()
    {
        Answers<QUrl> answers;
        m_service->download(exactOne(), answers.completion());
        QCOMPARE(answers.count(), 0);
        m_service->cancelQueryTask();
        QTRY_COMPARE(answers.count(), 1);
        QVERIFY(answers.last());
    }

    void cancelledDownloadIsNotAnswered()
    {
        const SubtitlePtr found = exactOne();
        Answers<QUrl> answers;
        m_service->download(found, answers.completion());
        m_service->cancelDownloads();
        QVERIFY(fetch(*m_service, found)); // the worker takes one job after the other
        QCOMPARE(answers.count(), 0);
    }

    void downloadOfAMissingEntryIsAnError_data()
    {
        QTest::addColumn<QString>("fileID");
        for (const char *id :
             {"", "0", "0/", "/1", "0/999", "7/1", "-1/1", "0/1/2", "a/b", "0/-1", "99999999999999999999/1"})
            QTest::newRow(id) << QString::fromLatin1(id);
    }
    void downloadOfAMissingEntryIsAnError()
    {
        QFETCH(const QString, fileID);
        Subtitle subtitle;
        subtitle.subFileName = u"Lights.DVDRip"_s;
        subtitle.fileID = fileID;
        const Result<QUrl> result = fetch(*m_service, std::make_shared<const Subtitle>(subtitle));
        QVERIFY(!result);
        QCOMPARE(result.error().domain, u"Catalogue"_s);
        QVERIFY(!result.error().localizedDescription.isEmpty());
    }

    void downloadFromAReplacedCatalogueIsAnError()
    {
        const SubtitlePtr found = exactOne();
        CatalogueFixture other(m_sandbox, u"starter.sqlite"_s);
        other.film({u"Other"_s}, 2000);
        for (int i = 0; i < 10; ++i)
            other.subtitle(u"Other.%1"_s.arg(i), 1);
        other.write();
        QVERIFY(!fetch(*m_service, found));
    }

    void oldDownloadsAreClearedAtTheStart()
    {
        const QString old = m_sandbox.writeFile(u"downloads/get-old/a.srt"_s, "old");
        const timespec longAgo{QDateTime::currentSecsSinceEpoch() - 2'592'000, 0};
        const timespec times[] = {longAgo, longAgo};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(QFileInfo(old).path()).constData(), times, 0), 0);
        const auto service = serviceOf({});
        QTRY_VERIFY(!QFileInfo::exists(old));
    }
};

PLOVENDIX_TEST(CatalogueServiceTest)
#include "CatalogueServiceTest.moc"
