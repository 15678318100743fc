#include "CatalogueClient.h"

#include <base/Bundle.h>
#include <media/MovieHash.h>
#include <media/names/FileNameParser.h>
#include <media/names/VideoNames.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QImage>

using namespace Qt::StringLiterals;

namespace
{
const QString Video = u"Harbour.Lights.2019.1080p.BluRay.x264"_s;
}

/// The catalogue and the sample video as they ship.
class StarterCatalogueTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    std::shared_ptr<CatalogueService> m_service;
    std::unique_ptr<CatalogueMetadata> m_metadata;
    std::optional<VideoHash> m_video;

    QList<SubtitlePtr> ofSample(const QString &language) const
    {
        return found(*m_service, videoQuery(m_video->hash, m_video->size, language));
    }
    QList<SubtitlePtr> everything() const
    {
        QList<SubtitlePtr> all;
        for (const char *title :
             {"harbour lights", "tin orchard", "night ferry", "quillmouth", "lamplighters"})
            all += found(*m_service, {{Param::text, QString::fromLatin1(title)}});
        return all;
    }
    QImage posterOf(const QString &id) const
    {
        Caught<FindResult> film;
        m_metadata->findExternally(id, ExternalSource::imdb, film.completion());
        const QList<TmdbItem> items = film.value().movieResults + film.value().tvResults;
        Caught<QImage> image;
        m_metadata->fetchImage(items.value(0), ImageKind::Poster, QSize(154, 154), image.completion());
        return image.value();
    }

private Q_SLOTS:
    void initTestCase()
    {
        const std::optional<QString> starter = Bundle::main().pathForResource(u"starter"_s, u"sqlite"_s);
        QVERIFY(starter);
        const QList<CataloguePlace> places = standardCataloguePlaces(*starter);
        m_service = std::make_shared<CatalogueService>(places, std::make_shared<VideoNames>());
        m_metadata = std::make_unique<CatalogueMetadata>(places);
        m_video = movieHash(QUrl::fromLocalFile(Bundle::main().folder() + u"/sample/"_s + Video + u".mkv"_s));
        QVERIFY(m_video);
    }

    void sampleGivesSixEnglishResults()
    {
        const QList<SubtitlePtr> found = ofSample(u"eng"_s);
        QStringList rows;
        for (const SubtitlePtr &subtitle : found)
            rows += subtitle->subFileName + u'|' + subtitle->subFormat;
        QCOMPARE(rows, QStringList({Video + u"|srt"_s, u"Harbour.Lights.2019.720p.WEB.DL|srt"_s,
                                    u"harbour lights 2019 [styled]|ass"_s, u"Harbour.Lights.2019.web|vtt"_s,
                                    u"Harbour Lights CD1|sub"_s, u"Harbour.Lights.2019.DVDRip.XviD|srt"_s}));
        QVERIFY(found[0]->matchesHash && !found[1]->matchesHash);
        QCOMPARE(found[0]->downloads, std::optional<qint64>(48210));
        QCOMPARE(found[0]->framesPerSecond, std::optional(23.976));
        QCOMPARE(found[0]->title, u"Harbour Lights"_s);
        QCOMPARE(found[0]->year, std::optional(2019));
        QVERIFY(found[1]->hearingImpaired);
    }

    void sampleHasAnExactMatchInEveryLanguage_data()
    {
        QTest::addColumn<QString>("language");
        for (const char *language : {"eng", "ger", "fre", "spa", "jpn", "pob"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }
    void sampleHasAnExactMatchInEveryLanguage()
    {
        QFETCH(const QString, language);
        const QList<SubtitlePtr> found = ofSample(language);
        QVERIFY(found.size() >= 2);
        QVERIFY(found.first()->matchesHash);
        QCOMPARE(found.first()->subFileName, Video);
    }

    void wordsOfTheSamplesNameFindItToo()
    {
        const QString words =
            videoFileComponents(QUrl::fromLocalFile(u"/"_s + Video + u".mkv"_s)).searchString;
        QCOMPARE(words, u"Harbour Lights 2019"_s);
        for (const QString &text : {words, u"hafenlichter"_s})
            QCOMPARE(found(*m_service, textQuery(text)).size(), 6);
    }

    void everySubtitleDownloadsAndReadsAsItsFormat()
    {
        const QHash<QString, QByteArray> beginnings{{u"srt"_s, "1\n00:"},
                                                    {u"vtt"_s, "WEBVTT\n"},
                                                    {u"ass"_s, "[Script Info]"},
                                                    {u"sub"_s, "{1}{1}25"}};
        const QList<SubtitlePtr> all = everything();
        QCOMPARE(all.size(), 32);
        for (const SubtitlePtr &subtitle : all) {
            const Result<QUrl> url = fetch(*m_service, subtitle);
            QVERIFY(url);
            QFile file(url->toLocalFile());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY(beginnings.contains(subtitle->subFormat));
            QVERIFY(file.readAll().startsWith(beginnings[subtitle->subFormat]));
            QVERIFY(file.fileName().endsWith(u'.' + subtitle->subFormat));
        }
    }

    void everyFilmHasAPosterOfTwoToThree()
    {
        QSet<QString> ids;
        for (const SubtitlePtr &subtitle : everything())
            ids += *subtitle->imdbID;
        QCOMPARE(ids.size(), 6);
        for (const QString &id : ids) {
            const QImage poster = posterOf(id);
            QCOMPARE(poster.deviceIndependentSize().toSize(), QSize(154, 231));
            QVERIFY(poster.pixelColor(77, 4) != QColor(Qt::black)); // the ground of every drawing
        }
    }
};

PLOVENDIX_TEST(StarterCatalogueTest)
#include "StarterCatalogueTest.moc"
