#include "RestFixture.h"

#include <base/FileSystemCalls.h>
#include <base/FileWriting.h>
#include <tests/support/TestMain.h>

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// Lets only files for the callers fail, not those of the cache.
class NoRoomForCopies final : public FileSystemCalls
{
public:
    NoRoomForCopies() { setCallsOfWriteFile(this); }
    ~NoRoomForCopies() override { setCallsOfWriteFile(nullptr); }
    NoRoomForCopies(const NoRoomForCopies &) = delete;
    NoRoomForCopies &operator=(const NoRoomForCopies &) = delete;

    int rename(const QByteArray &from, const QByteArray &to) override
    {
        return to.contains("/get-") ? -ENOSPC : FileSystemCalls::rename(from, to);
    }
};

QByteArray contentOf(const Caught<QUrl> &caught)
{
    QFile file((*caught).value().toLocalFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class RestDownloadTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void fileArrivesUnderAPlainName()
    {
        const auto caught = m_fixture->download(m_fixture->subtitle());
        QVERIFY(!caught->came());
        caught->value();
        QCOMPARE(contentOf(*caught), SubtitleLinks::content(9200001));
        QCOMPARE(caught->value().fileName(), u"Paper.Lighthouse.2019.srt"_s);
        const ReceivedRequest order = m_fixture->standIn.requests("/api/v1/download").constFirst();
        const QJsonObject body = QJsonDocument::fromJson(order.body).object();
        QCOMPARE(body[u"file_id"_s].toInteger(), 9200001);
        QCOMPARE(body[u"sub_format"_s], u"srt"_s);
        QCOMPARE(order.header("Content-Type"), "application/json");
        QVERIFY(m_fixture->standIn.links().requests().constFirst().header("Api-Key").isEmpty());
    }

    void choosingAgainCostsNothing()
    {
        const auto first = m_fixture->download(m_fixture->subtitle());
        QVERIFY(QFile::remove(first->value().toLocalFile())); // as delivery does
        m_fixture->restart();
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        QCOMPARE(orders(), 1);
        QCOMPARE(m_fixture->standIn.links().requests().size(), 1);
    }

    void keptFilesAgeOutAfterAWeek()
    {
        m_fixture->download(m_fixture->subtitle())->value();
        m_fixture->clock.setDate(m_fixture->clock.date().addDays(8));
        m_fixture->download(m_fixture->subtitle())->value();
        QCOMPARE(orders(), 2);
    }

    void twoAtOnceAreOneOrderAndTwoFiles()
    {
        const auto first = m_fixture->download(m_fixture->subtitle());
        const auto second = m_fixture->download(m_fixture->subtitle());
        const auto other = m_fixture->download(m_fixture->subtitle(9200002));
        QTRY_VERIFY_WITH_TIMEOUT(first->came() && second->came() && other->came(), WaitLimit);
        QVERIFY(first->value().path() != second->value().path());
        QCOMPARE(contentOf(*first), contentOf(*second));
        QCOMPARE(contentOf(*other), SubtitleLinks::content(9200002));
        QCOMPARE(orders(), 2);
    }

    void contentIsUnpackedAndInUtf8_data()
    {
        QTest::addColumn<QString>("behaviour");
        for (const char *name : {"subtitle-gzip", "subtitle-zip", "subtitle-zip-damaged",
                                 "subtitle-zip-locked", "subtitle-utf16", "subtitle-1252", "link-name-path"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void contentIsUnpackedAndInUtf8()
    {
        QFETCH(const QString, behaviour);
        m_fixture->standIn.select(behaviour);
        const auto caught = m_fixture->download(m_fixture->subtitle());
        caught->value();
        QCOMPARE(contentOf(*caught), SubtitleLinks::content(9200001));
        const QString folder = QFileInfo(caught->value().toLocalFile()).canonicalFilePath();
        QVERIFY(folder.startsWith(QFileInfo(m_fixture->places().downloads).canonicalFilePath()));
    }

    void originalBytesAreKeptWhenAPersonWantsThem()
    {
        m_fixture->standIn.select(u"subtitle-1252"_s);
        m_fixture->settings.keepsOriginalBytes = true;
        m_fixture->service->setSettings(m_fixture->settings);
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())),
                 QString::fromUtf8(SubtitleLinks::content(9200001)).toLatin1());
        // The choice is about handing out, not about what is kept.
        m_fixture->settings.keepsOriginalBytes = false;
        m_fixture->service->setSettings(m_fixture->settings);
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        QCOMPARE(orders(), 1);
    }

    void otherThingsAreRefused_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<ServiceFailure>("kind");
        QTest::addColumn<int>("ordersInAll"); // one while the paid link is kept
        const auto row = [](const char *name, ServiceFailure kind, int ordersInAll) {
            QTest::newRow(name) << QString::fromLatin1(name) << kind << ordersInAll;
        };
        row("subtitle-gif", ServiceFailure::NotASubtitle, 1);
        row("subtitle-html", ServiceFailure::NotASubtitle, 1);
        row("subtitle-notice", ServiceFailure::NotASubtitle, 1);
        row("subtitle-short", ServiceFailure::NotASubtitle, 1);
        row("subtitle-empty", ServiceFailure::NotASubtitle, 1);
        row("subtitle-304", ServiceFailure::NotASubtitle, 1);
        row("subtitle-rar", ServiceFailure::NotASubtitle, 1);
        row("subtitle-zip-shut", ServiceFailure::NotASubtitle, 1);
        row("subtitle-bomb", ServiceFailure::NotASubtitle, 1);
        row("subtitle-9-mib", ServiceFailure::BadAnswer, 1);
        row("link-expired", ServiceFailure::LinkExpired, 2);
        row("link-forbidden", ServiceFailure::LinkExpired, 2);
        row("link-gone", ServiceFailure::LinkExpired, 2);
        row("link-clear", ServiceFailure::BadAnswer, 2);
        row("link-foreign", ServiceFailure::BadAnswer, 2);
        row("link-missing", ServiceFailure::BadAnswer, 2);
        row("invalid-file", ServiceFailure::Rejected, 2);
        row("invalid-file-counted", ServiceFailure::Rejected, 2);
        row("unknown-key", ServiceFailure::KeyRefused, 2);
        row("down@download", ServiceFailure::Unavailable, 2);
        row("close-before@download", ServiceFailure::Unavailable, 2);
        row("html@download", ServiceFailure::BadAnswer, 2);
        row("null@download", ServiceFailure::BadAnswer, 2);
        row("cut@download", ServiceFailure::BadAnswer, 2);
        row("html@link", ServiceFailure::NotASubtitle, 1);
        row("no-content@link", ServiceFailure::NotASubtitle, 1);
        row("length-too-long@link", ServiceFailure::Unavailable, 1);
        row("chunked-without-end@link", ServiceFailure::Unavailable, 1);
        row("close-before@link", ServiceFailure::Unavailable, 1);
        row("sign-in-page@link", ServiceFailure::BadAnswer, 1);
        row("gzip-bomb@link", ServiceFailure::BadAnswer, 1);
    }
    void otherThingsAreRefused()
    {
        QFETCH(const QString, behaviour);
        m_fixture->standIn.select(behaviour);
        const auto caught = m_fixture->download(m_fixture->subtitle());
        QTEST(kindOf(*caught), "kind");
        // An order is made once, whatever comes of it.
        QCOMPARE(orders(), 1);
        QVERIFY(!caught->error().detail.contains(u"0f0f0f0f"_s));
        // Nothing of it was kept.
        m_fixture->standIn.clearBehaviours();
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        QTEST(orders(), "ordersInAll");
    }

    void serviceThatWantsAnAccountSaysSo()
    {
        m_fixture->standIn.select(u"account-wanted"_s);
        const auto without = m_fixture->download(m_fixture->subtitle());
        QCOMPARE(kindOf(*without), ServiceFailure::LoginRefused);
        QVERIFY(without->error().localizedDescription.contains(u"wants an account"_s));
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle())->value();
    }

    void linkThatServesOnceIsOrderedAnew()
    {
        m_fixture->standIn.select({u"close-once@link"_s, u"link-once"_s});
        // The broken transfer is tried again by itself, in vain: that link is spent.
        QCOMPARE(kindOf(*m_fixture->download(m_fixture->subtitle())), ServiceFailure::LinkExpired);
        QCOMPARE(orders(), 1);
        m_fixture->download(m_fixture->subtitle())->value();
        QCOMPARE(orders(), 2);
    }

    void oldLinksAreNotUsed_data()
    {
        QTest::addColumn<bool>("asleep"); // when only the date goes on
        QTest::newRow("after a while") << false;
        QTest::newRow("after a sleep") << true;
    }
    void oldLinksAreNotUsed()
    {
        QFETCH(const bool, asleep);
        m_fixture->standIn.select(u"close-before@link"_s);
        m_fixture->download(m_fixture->subtitle())->error();
        m_fixture->standIn.clearBehaviours();
        if (asleep)
            m_fixture->clock.setDate(m_fixture->clock.date().addDuration(3h));
        else
            m_fixture->clock.advance(3h);
        m_fixture->download(m_fixture->subtitle())->value();
        QCOMPARE(orders(), 2);
    }

    void cancellingQueriesLeavesDownloadsAlone()
    {
        const auto caught = m_fixture->download(m_fixture->subtitle());
        m_fixture->service->cancelQueryTask();
        caught->value();
    }

    void linkIsKeptUntilTheFileIsPublished()
    {
        const QString inTheWay = m_sandbox.writeFile(u"rest/downloads"_s, "in the way");
        m_fixture->download(m_fixture->subtitle())->error();
        QVERIFY(QFile::remove(inTheWay));
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        QCOMPARE(orders(), 1);
    }

    void linkIsKeptWhileOnlyTheCacheHasTheFile()
    {
        {
            const NoRoomForCopies noRoom;
            m_fixture->download(m_fixture->subtitle())->error();
        }
        QDir kept(m_fixture->places().downloads + u"/kept"_s);
        QVERIFY(!kept.isEmpty());
        QVERIFY(kept.removeRecursively());
        QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        QCOMPARE(orders(), 1);
    }

    void linkIsKeptWhileTheFileIsNotInTheCache()
    {
        m_sandbox.writeFile(u"rest/downloads/kept"_s, "in the way of the cache");
        for (int times = 0; times < 2; ++times) {
            QCOMPARE(contentOf(*m_fixture->download(m_fixture->subtitle())), SubtitleLinks::content(9200001));
        }
        QCOMPARE(orders(), 1);
        QCOMPARE(m_fixture->standIn.links().requests().size(), 2);
    }

    void folderThatCannotBeWrittenIsSaid()
    {
        m_sandbox.writeFile(u"rest/downloads"_s, "in the way");
        const auto caught = m_fixture->download(m_fixture->subtitle());
        caught->error();
        QVERIFY(!caught->error().localizedDescription.isEmpty());
    }

private:
    int orders() const { return static_cast<int>(m_fixture->standIn.requests("/api/v1/download").size()); }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestDownloadTest)
#include "RestDownloadTest.moc"
