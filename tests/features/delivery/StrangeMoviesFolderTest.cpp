#include "DeliveryFixture.h"

#include <tests/support/FaultyCalls.h>

#include <QTest>

#include <cerrno>
#include <tests/support/TestMain.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Deliveries to Movies folders that are not what they should be.
class StrangeMoviesFolderTest final : public QObject
{
    Q_OBJECT

private:
    /// Delivers the fixture's download through a file manager that goes through these calls.
    static Result<bool> send(DeliveryFixture &fixture, const std::shared_ptr<FaultyCalls> &calls)
    {
        MoviesFileManager files(calls);
        files.movies = fixture.files.movies;
        const QUrl download = fixture.writeFile("downloads/A.srt", "1\n");
        Subtitle subtitle;
        subtitle.subLanguageID = u"en"_s;
        subtitle.subFormat = u"srt"_s;
        const Result<CompanionFile> sent =
            CompanionDelivery(files, fixture.workspace).send(download, subtitle, fixture.request);
        return sent ? Result<bool>(sent->isReplyTaken) : Result<bool>(sent.error());
    }

    static void checkNoReplyWasSent(const DeliveryFixture &fixture)
    {
        QCOMPARE(fixture.contentOf("downloads/A.srt"), QByteArray("1\n"));
        QVERIFY(fixture.workspace.opened.isEmpty());
    }

private Q_SLOTS:
    void fileInItsPlaceCountsAsNone()
    {
        DeliveryFixture fixture;
        fixture.writeFile("Films", "a file");
        fixture.files.movies = FileManager::urlFromFileSystemPath(fixture.path("Films"));
        const auto sent = send(fixture, std::make_shared<FaultyCalls>());
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"SendSubtitleErrors"_s);
        QCOMPARE(sent.error().code, static_cast<int>(SendSubtitleErrors::couldNotFindMoviesFolder));
        QCOMPARE(fixture.contentOf("Films"), QByteArray("a file"));
        checkNoReplyWasSent(fixture);
    }

    void readOnlyDiskCountsAsNone()
    {
        DeliveryFixture fixture;
        const auto calls = std::make_shared<FaultyCalls>();
        calls->failingName = u"makeFolder"_s;
        calls->failure = EROFS;
        const auto sent = send(fixture, calls);
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"SendSubtitleErrors"_s);
        QCOMPARE(sent.error().code, static_cast<int>(SendSubtitleErrors::couldNotFindMoviesFolder));
        checkNoReplyWasSent(fixture);
    }

    void folderThatTakesNothingMakesTheMoveFail()
    {
        DeliveryFixture fixture;
        QVERIFY(fixture.makeFolder("Movies/Plovendix"));
        const auto calls = std::make_shared<FaultyCalls>();
        calls->failingName = u"rename"_s;
        calls->failure = EROFS;
        const auto sent = send(fixture, calls);
        QVERIFY(!sent);
        QCOMPARE(sent.error().domain, u"FileManager"_s);
        QCOMPARE(sent.error().code, EROFS);
        QVERIFY(fixture.namesIn("Movies/Plovendix").isEmpty());
        checkNoReplyWasSent(fixture);
    }

    void anotherDiskGetsACopyAndTheDownloadGoes()
    {
        DeliveryFixture fixture;
        const auto calls = std::make_shared<FaultyCalls>();
        calls->otherDisk = fixture.path("Movies");
        const auto sent = send(fixture, calls);
        QVERIFY(sent);
        QVERIFY(*sent);
        QVERIFY(calls->made.contains(u"write"_s));
        QCOMPARE(fixture.contentOf("Movies/Plovendix/A.en.srt"), QByteArray("1\n"));
        QVERIFY(!fixture.contentOf("downloads/A.srt"));
        QCOMPARE(fixture.workspace.opened.size(), 1);
    }

    void anotherDiskThatIsFullLeavesTheDownload()
    {
        DeliveryFixture fixture;
        const auto calls = std::make_shared<FaultyCalls>();
        calls->otherDisk = fixture.path("Movies");
        calls->failingName = u"write"_s;
        calls->failure = ENOSPC;
        const auto sent = send(fixture, calls);
        QVERIFY(!sent);
        QCOMPARE(sent.error().code, ENOSPC);
        QVERIFY(fixture.namesIn("Movies/Plovendix").isEmpty());
        checkNoReplyWasSent(fixture);
    }
};

PLOVENDIX_TEST(StrangeMoviesFolderTest)
#include "StrangeMoviesFolderTest.moc"
