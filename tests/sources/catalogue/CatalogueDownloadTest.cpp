#include "CatalogueClient.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <atomic>

#include <fcntl.h>
#include <tests/support/TestMain.h>
#include <sys/stat.h>

/// What a download leaves on the disk.
class CatalogueDownloadTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    CatalogueHome m_home{m_sandbox};

private Q_SLOTS:
    void init() { m_home.reset(); }

    void downloadWritesACopy()
    {
        const auto catalogue = m_home.service();
        const SubtitlePtr found = firstOf(*catalogue, videoQuery(Hash, Size));
        QVERIFY(found);
        const Result<QUrl> first = fetch(*catalogue, found);
        const Result<QUrl> second = fetch(*catalogue, found);
        QVERIFY(first && second);
        QCOMPARE(first->fileName(), QStringLiteral("Lights.exact.srt"));
        QVERIFY(*first != *second);
        QVERIFY(first->toLocalFile().startsWith(m_sandbox.path(QStringLiteral("downloads/"))));
        QFile file(first->toLocalFile());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("Lights.exacteng1"));
    }

    void downloadIsNotCancelledWithTheQueries()
    {
        const auto catalogue = m_home.service();
        const SubtitlePtr found = firstOf(*catalogue, videoQuery(Hash, Size));
        QVERIFY(found);
        std::atomic<int> answers = 0;
        catalogue->download(found, [&](const Result<QUrl> &result) { answers += result ? 1 : 100; });
        QCOMPARE(answers.load(), 0);
        catalogue->cancelQueryTask();
        QTRY_COMPARE(answers.load(), 1);
    }

    void cancelledDownloadIsNotAnswered()
    {
        const auto catalogue = m_home.service();
        const SubtitlePtr found = firstOf(*catalogue, videoQuery(Hash, Size));
        QVERIFY(found);
        std::atomic<int> answers = 0;
        catalogue->download(found, [&](const Result<QUrl> &) { ++answers; });
        catalogue->cancelDownloads();
        // The worker takes one job after the other.
        QVERIFY(fetch(*catalogue, found));
        QCOMPARE(answers.load(), 0);
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
        QFETCH(QString, fileID);
        Subtitle subtitle;
        subtitle.subFileName = QStringLiteral("Lights.exact");
        subtitle.fileID = fileID;
        const auto catalogue = m_home.service();
        const Result<QUrl> result = fetch(*catalogue, std::make_shared<const Subtitle>(subtitle));
        QVERIFY(!result);
        QCOMPARE(result.error().domain, QStringLiteral("Catalogue"));
        QVERIFY(!result.error().localizedDescription.isEmpty());
    }

    void downloadFromAReplacedCatalogueIsAnError()
    {
        const auto catalogue = m_home.service();
        const SubtitlePtr found = firstOf(*catalogue, videoQuery(Hash, Size));
        CatalogueFixture other(m_sandbox, QStringLiteral("starter.sqlite"));
        other.film({QStringLiteral("Other")}, 2000);
        for (int i = 0; i < 10; ++i)
            other.subtitle(QStringLiteral("Other.%1").arg(i), 1);
        other.write();
        QVERIFY(found);
        QVERIFY(!fetch(*catalogue, found));
    }

    void oldDownloadsAreClearedAtTheStart()
    {
        const QString old = m_sandbox.writeFile(QStringLiteral("downloads/get-old/a.srt"), "old");
        const QByteArray path = QFile::encodeName(QFileInfo(old).path());
        const timespec longAgo = {QDateTime::currentSecsSinceEpoch() - 2'592'000, 0};
        const timespec times[] = {longAgo, longAgo};
        QCOMPARE(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);
        const auto catalogue = m_home.service();
        QTRY_VERIFY(!QFileInfo::exists(old));
    }
};

PLOVENDIX_TEST(CatalogueDownloadTest)
#include "CatalogueDownloadTest.moc"
