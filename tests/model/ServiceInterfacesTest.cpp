#include <model/MetadataService.h>
#include <model/SubtitleService.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>

#include <QTest>

using namespace Qt::StringLiterals;

/// What the rest of the program sees of the services.
class ServiceInterfacesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sharedClientIsTheInstalledOne()
    {
        const auto subtitles = ScriptedSubtitleService::install();
        const auto metadata = ScriptedMetadataService::install();
        QCOMPARE(&SubtitleService::shared(), subtitles.get());
        QCOMPARE(&MetadataService::shared(), metadata.get());
        QVERIFY(!metadata->preferredLanguage);
    }

    void sharedClientMustBeInstalled()
    {
        SubtitleService::setShared(nullptr);
        MetadataService::setShared(nullptr);
        QVERIFY(!faultOf([] { SubtitleService::shared(); }).isEmpty());
        QVERIFY(!faultOf([] { MetadataService::shared(); }).isEmpty());
    }

    void staticOperationsAskTheSharedClient()
    {
        const auto subtitles = ScriptedSubtitleService::install();
        const QUrl video(u"file:///videos/Film.mkv"_s);
        QCOMPARE(SubtitleService::hashFor(video), subtitles->hash);
        QCOMPARE(subtitles->hashed, QList<QUrl>{video});
        QCOMPARE(VideoFileUtilities::componentsFrom(video).searchString, subtitles->searchString);
        subtitles->hash.reset();
        QVERIFY(!SubtitleService::hashFor(video));
    }

    void positionsAreFixed()
    {
        QCOMPARE(static_cast<int>(Param::byteSize), 2);
        QCOMPARE(static_cast<int>(Param::movieHash), 3);
        QCOMPARE(static_cast<int>(Param::text), 4);
        QCOMPARE(static_cast<int>(Param::language), 6);
        QCOMPARE(static_cast<int>(ExternalSource::imdb), 0);
        QVERIFY(!QueryResult().subtitles); // absent, not empty
    }

    void detailsAreWhatIsKnown_data()
    {
        QTest::addColumn<Subtitle>("subtitle");
        QTest::addColumn<QString>("details");
        Subtitle subtitle;
        QTest::newRow("nothing") << subtitle << QString();
        subtitle.title = u"Harbour Lights"_s;
        QTest::newRow("title") << subtitle << u"Harbour Lights"_s;
        subtitle.year = 2019;
        QTest::newRow("year") << subtitle << u"Harbour Lights (2019)"_s;
        subtitle.season = 1;
        QTest::newRow("season alone") << subtitle << u"Harbour Lights (2019)"_s;
        subtitle.episode = 2;
        QTest::newRow("episode") << subtitle << u"Harbour Lights S01E02 (2019)"_s;
        subtitle.matchesHash = true;
        QTest::newRow("match") << subtitle << u"Harbour Lights S01E02 (2019) · matches this file"_s;
        subtitle = {};
        subtitle.year = 2019;
        QTest::newRow("year without a title") << subtitle << QString();
        subtitle.framesPerSecond = 23.976;
        subtitle.downloads = 48'210;
        QTest::newRow("numbers") << subtitle << u"23.976 fps · 48,210 downloads"_s;
        subtitle.framesPerSecond = 0;
        subtitle.downloads = 0;
        QTest::newRow("no frame rate") << subtitle << u"0 downloads"_s;
        subtitle.downloads.reset();
        subtitle.hearingImpaired = true;
        subtitle.foreignPartsOnly = true;
        subtitle.machineTranslated = true;
        QTest::newRow("marks") << subtitle << u"hearing impaired · foreign parts only · machine translated"_s;
    }

    void detailsAreWhatIsKnown()
    {
        QFETCH(Subtitle, subtitle);
        QFETCH(QString, details);
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        const QString shown = subtitle.detailString();
        QLocale::setDefault(before);
        QCOMPARE(shown, details);
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(ServiceInterfacesTest)
#include "ServiceInterfacesTest.moc"
