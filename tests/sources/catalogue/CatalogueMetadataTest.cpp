#include "CatalogueFixture.h"

#include <base/MainQueue.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <tests/support/TestMain.h>

#include <QFile>
#include <QTest>

namespace
{
using Presence = CataloguePlace::Presence;
}

/// Everything here happens on the main thread, so that the answers need no locks.
class CatalogueMetadataTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    QString m_starter;
    QString m_own;

    std::unique_ptr<CatalogueMetadata> metadata() const
    {
        const QList<CataloguePlace> places = {{m_starter, Presence::Required}, {m_own, Presence::Optional}};
        return std::make_unique<CatalogueMetadata>(places);
    }

    static Result<FindResult> find(CatalogueMetadata &metadata, const QString &id)
    {
        std::optional<Result<FindResult>> answer;
        bool wasOnMainThread = false;
        metadata.findExternally(id, ExternalSource::imdb, [&](const Result<FindResult> &result) {
            answer = result;
            wasOnMainThread = MainQueue::isMainThread();
        });
        const bool wasLate = !answer.has_value();
        const bool came = QTest::qWaitFor([&] { return answer.has_value(); }, 20000);
        if (!came || !wasLate || !wasOnMainThread)
            return base::Error{QStringLiteral("test"), 0, QStringLiteral("no proper answer")};
        return *answer;
    }

    static Result<QImage> image(CatalogueMetadata &metadata, const TmdbItem &item)
    {
        std::optional<Result<QImage>> answer;
        bool wasOnMainThread = false;
        metadata.fetchImage(item, ImageKind::Poster, QSize(154, 154), [&](const Result<QImage> &result) {
            answer = result;
            wasOnMainThread = MainQueue::isMainThread();
        });
        const bool wasLate = !answer.has_value();
        const bool came = QTest::qWaitFor([&] { return answer.has_value(); }, 20000);
        if (!came || !wasLate || !wasOnMainThread)
            return base::Error{QStringLiteral("test"), 0, QStringLiteral("no proper answer")};
        return *answer;
    }

private Q_SLOTS:
    void init()
    {
        CatalogueFixture starter(m_sandbox, QStringLiteral("starter.sqlite"));
        starter.film({QStringLiteral("Harbour Lights")}, 2019)
            .withImdb(990019001)
            .withPoster(CatalogueFixture::solidPicture(480, 720));
        starter.film({QStringLiteral("Brack")}, 2020, 1, 1).withImdb(990020005);
        starter.film({QStringLiteral("Damaged")}, 2020).withImdb(990020009).withPoster("no picture");
        starter.write();
        m_starter = starter.path();
        m_own = m_sandbox.path(QStringLiteral("own.sqlite"));
        QFile::remove(m_own);
    }

    void filmAndItsPosterAreFound()
    {
        const auto service = metadata();
        const Result<FindResult> found = find(*service, QStringLiteral("tt990019001"));
        QVERIFY(found);
        QCOMPARE(found->movieResults.size(), 1);
        QVERIFY(found->tvResults.isEmpty() && found->personResults.isEmpty());
        const Result<QImage> poster = image(*service, found->movieResults.first());
        QVERIFY(poster);
        QCOMPARE(poster->deviceIndependentSize().toSize(), QSize(154, 231));
        QCOMPARE(poster->pixelColor(10, 10), QColor(Qt::darkCyan));
    }

    void episodeIsATelevisionResult()
    {
        const auto service = metadata();
        const Result<FindResult> found = find(*service, QStringLiteral("990020005"));
        QVERIFY(found);
        QVERIFY(found->movieResults.isEmpty());
        QCOMPARE(found->tvResults.size(), 1);
        const Result<QImage> poster = image(*service, found->tvResults.first());
        QVERIFY(!poster);
        QCOMPARE(poster.error().domain, QStringLiteral("Catalogue"));
    }

    void unknownFilmIsAnEmptyAnswer_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id : {"tt1234567", "nm0000001", "", "; DROP TABLE film"})
            QTest::newRow(id) << QString::fromLatin1(id);
    }

    void unknownFilmIsAnEmptyAnswer()
    {
        QFETCH(QString, id);
        const auto service = metadata();
        const Result<FindResult> found = find(*service, id);
        QVERIFY(found);
        QVERIFY(found->movieResults.isEmpty() && found->tvResults.isEmpty());
    }

    void damagedPictureIsAnError()
    {
        const auto service = metadata();
        const Result<FindResult> found = find(*service, QStringLiteral("tt990020009"));
        QVERIFY(found && found->movieResults.size() == 1);
        QVERIFY(!image(*service, found->movieResults.first()));
    }

    void foreignItemIsAnError()
    {
        const auto service = metadata();
        QVERIFY(!image(*service, TmdbItem{}));
        QVERIFY(!image(*service, TmdbItem{QVariantList{QStringLiteral("nowhere"), 1}}));
    }

    void ownCatalogueIsAskedToo()
    {
        CatalogueFixture own(m_sandbox, QStringLiteral("own.sqlite"));
        own.film({QStringLiteral("Orchard")}, 2021).withImdb(990021002).write();
        const auto service = metadata();
        const Result<FindResult> found = find(*service, QStringLiteral("tt990021002"));
        QVERIFY(found);
        QCOMPARE(found->movieResults.size(), 1);
    }

    void missingCatalogueIsAnErrorUnlessAnotherKnowsTheFilm()
    {
        QVERIFY(QFile::remove(m_starter));
        CatalogueFixture own(m_sandbox, QStringLiteral("own.sqlite"));
        own.film({QStringLiteral("Orchard")}, 2021).withImdb(990021002).write();
        const auto service = metadata();
        QVERIFY(find(*service, QStringLiteral("tt990021002")));
        const Result<FindResult> none = find(*service, QStringLiteral("tt990019001"));
        QVERIFY(!none);
        QVERIFY(none.error().localizedDescription.contains(m_starter));
    }
};

PLOVENDIX_TEST(CatalogueMetadataTest)
#include "CatalogueMetadataTest.moc"
