#include "CatalogueClient.h"

#include <base/Bundle.h>
#include <model/MetadataService.h>
#include <model/LanguageCodes.h>
#include <model/SubtitleService.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QImage>
#include <QTest>

namespace
{
const QString Video = QStringLiteral("Harbour.Lights.2019.1080p.BluRay.x264");
}

/// The catalogue and the sample video as they ship, through the interfaces the window uses.
class StarterCatalogueTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    QUrl m_video;

    static QList<SubtitlePtr> ask(const QList<Arg> &args) { return found(SubtitleService::shared(), args); }

    QList<SubtitlePtr> askForSample(const char *language) const
    {
        const std::optional<VideoHash> hash = SubtitleService::hashFor(m_video);
        if (!hash)
            return {};
        return ask({{Param::byteSize, QString::number(hash->size)},
                    {Param::movieHash, hash->hash},
                    {Param::language, QString::fromLatin1(language)}});
    }

    static void verifyFormat(const QString &format, const QString &text)
    {
        if (format == QStringLiteral("srt"))
            QVERIFY(text.startsWith(QStringLiteral("1\n00:")));
        else if (format == QStringLiteral("vtt"))
            QVERIFY(text.startsWith(QStringLiteral("WEBVTT\n")));
        else if (format == QStringLiteral("ass"))
            QVERIFY(text.startsWith(QStringLiteral("[Script Info]")));
        else
            QVERIFY(format == QStringLiteral("sub") && text.startsWith(QStringLiteral("{1}{1}25")));
    }

    static QImage posterOf(const QString &id)
    {
        QImage poster;
        bool isDone = false;
        MetadataService::shared().findExternally(
            id, ExternalSource::imdb, [&](const Result<FindResult> &found) {
                const QList<TmdbItem> items =
                    found ? found->movieResults + found->tvResults : QList<TmdbItem>();
                if (items.isEmpty()) {
                    isDone = true;
                    return;
                }
                MetadataService::shared().fetchImage(items.first(), ImageKind::Poster, QSize(154, 154),
                                                     [&](const Result<QImage> &image) {
                                                         poster = image ? *image : QImage();
                                                         isDone = true;
                                                     });
            });
        return QTest::qWaitFor([&] { return isDone; }, 20000) ? poster : QImage();
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString bundle = Bundle::main().folder();
        m_video = QUrl::fromLocalFile(bundle + QStringLiteral("/sample/") + Video + QStringLiteral(".mkv"));
        const std::optional<QString> starter =
            Bundle::main().pathForResource(QStringLiteral("starter"), QStringLiteral("sqlite"));
        QVERIFY(starter);
        SubtitleService::setShared(std::make_shared<CatalogueService>(standardCataloguePlaces(*starter)));
        MetadataService::setShared(std::make_shared<CatalogueMetadata>(standardCataloguePlaces(*starter)));
    }

    void cleanupTestCase()
    {
        SubtitleService::setShared(nullptr);
        MetadataService::setShared(nullptr);
    }

    void sampleGivesSixEnglishResultsInOrder()
    {
        const QList<SubtitlePtr> found = askForSample("eng");
        QStringList names;
        QStringList formats;
        for (const SubtitlePtr &subtitle : found) {
            names += subtitle->subFileName;
            formats += subtitle->subFormat;
        }
        QCOMPARE(names,
                 QStringList({Video, QStringLiteral("Harbour.Lights.2019.720p.WEB.DL"),
                              QStringLiteral("harbour lights 2019 [styled]"),
                              QStringLiteral("Harbour.Lights.2019.web"), QStringLiteral("Harbour Lights CD1"),
                              QStringLiteral("Harbour.Lights.2019.DVDRip.XviD")}));
        QCOMPARE(formats.join(QLatin1Char(' ')), QStringLiteral("srt srt ass vtt sub srt"));
        QVERIFY(found[0]->matchesHash && !found[1]->matchesHash);
        QCOMPARE(found[0]->downloads, std::optional<qint64>(48210));
        QCOMPARE(found[0]->framesPerSecond, std::optional(23.976));
        QCOMPARE(found[0]->title, QStringLiteral("Harbour Lights"));
        QCOMPARE(found[0]->year, std::optional(2019));
        QVERIFY(found[1]->hearingImpaired);
    }

    void sampleHasAnExactMatchInEveryLanguage_data()
    {
        QTest::addColumn<QByteArray>("language");
        for (const char *language : {"eng", "ger", "fre", "spa", "jpn", "pob"})
            QTest::newRow(language) << QByteArray(language);
    }

    void sampleHasAnExactMatchInEveryLanguage()
    {
        QFETCH(QByteArray, language);
        const QList<SubtitlePtr> found = askForSample(language.constData());
        QVERIFY(found.size() >= 2);
        QVERIFY(found.first()->matchesHash);
        QCOMPARE(found.first()->subFileName, Video);
    }

    void wordsOfTheSamplesNameFindItToo()
    {
        const QString words = VideoFileUtilities::componentsFrom(m_video).searchString;
        QCOMPARE(words, QStringLiteral("Harbour Lights 2019"));
        QCOMPARE(ask({{Param::text, words}, {Param::language, QStringLiteral("eng")}}).size(), 6);
        QCOMPARE(
            ask({{Param::text, QStringLiteral("hafenlichter")}, {Param::language, QStringLiteral("eng")}})
                .size(),
            6);
    }

    void everySubtitleDownloadsAndReadsAsItsFormat()
    {
        int downloaded = 0;
        for (const char *title :
             {"harbour lights", "tin orchard", "night ferry", "quillmouth", "lamplighters"}) {
            for (const SubtitlePtr &subtitle : ask({{Param::text, QString::fromLatin1(title)}})) {
                const Result<QUrl> url = fetch(SubtitleService::shared(), subtitle);
                QVERIFY(url);
                QFile file(url->toLocalFile());
                QVERIFY(file.open(QIODevice::ReadOnly));
                verifyFormat(subtitle->subFormat, QString::fromUtf8(file.readAll()));
                QVERIFY(file.fileName().endsWith(QLatin1Char('.') + subtitle->subFormat));
                ++downloaded;
            }
        }
        QCOMPARE(downloaded, 32);
    }

    void everyFilmHasAPosterOfTwoToThree()
    {
        QStringList ids;
        for (const char *title :
             {"harbour lights", "tin orchard", "night ferry", "quillmouth", "lamplighters"}) {
            for (const SubtitlePtr &subtitle : ask({{Param::text, QString::fromLatin1(title)}})) {
                if (!ids.contains(*subtitle->imdbID))
                    ids += *subtitle->imdbID;
            }
        }
        QCOMPARE(ids.size(), 6);
        for (const QString &id : ids) {
            const QImage poster = posterOf(id);
            QVERIFY2(!poster.isNull(), qPrintable(id));
            QCOMPARE(poster.deviceIndependentSize().toSize(), QSize(154, 231));
        }
    }

    void posterShowsTheEveningColours()
    {
        const QImage poster = posterOf(QStringLiteral("tt990019001"));
        const QColor top = poster.pixelColor(poster.width() / 2, 4);
        const QColor bottom = poster.pixelColor(poster.width() / 2, poster.height() - 4);
        QVERIFY(top.blue() > top.red());
        QVERIFY(bottom.red() > 200 && bottom.red() > bottom.blue());
    }
};

PLOVENDIX_TEST(StarterCatalogueTest)
#include "StarterCatalogueTest.moc"
