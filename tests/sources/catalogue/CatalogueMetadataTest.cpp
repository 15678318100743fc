#include "CatalogueFixture.h"

#include <base/MainQueue.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <tests/support/TestMain.h>
#include <tests/support/timing/Caught.h>

#include <QBuffer>
#include <QFile>

using namespace Qt::StringLiterals;

/// Films and pictures of two catalogues.
class CatalogueMetadataTest : public QObject
{
    Q_OBJECT

    using Presence = CataloguePlace::Presence;

    Sandbox m_sandbox;
    const QString m_starter = m_sandbox.path(u"starter.sqlite"_s);
    const QString m_own = m_sandbox.path(u"own.sqlite"_s);
    std::unique_ptr<CatalogueMetadata> m_service;

    /// Makes one call and waits for its answer, which must come later and on the main thread.
    template <class Value, class Call>
    static Result<Value> awaited(const Call &call)
    {
        Caught<Value> answer;
        bool isOnMainThread = false;
        call([&, completion = answer.completion()](const Result<Value> &result) {
            isOnMainThread = MainQueue::isMainThread();
            completion(result);
        });
        const bool isLate = !answer.came();
        const Result<Value> result = *answer;
        return isLate && isOnMainThread ? result : base::Error{u"test"_s, 0, u"no proper answer"_s};
    }
    Result<FindResult> find(const QString &id) const
    {
        return awaited<FindResult>([&](const MetadataService::FindCompletion &completion) {
            m_service->findExternally(id, ExternalSource::imdb, completion);
        });
    }
    Result<QImage> image(const TmdbItem &item) const
    {
        return awaited<QImage>([&](const MetadataService::ImageCompletion &completion) {
            m_service->fetchImage(item, ImageKind::Poster, QSize(154, 154), completion);
        });
    }
    void writeOwn() const
    {
        CatalogueFixture(m_sandbox, u"own.sqlite"_s).film({u"Orchard"_s}, 2021).withImdb(990021002).write();
    }

private Q_SLOTS:
    void init()
    {
        QImage picture(480, 720, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QByteArray encoded;
        QBuffer buffer(&encoded);
        QVERIFY(picture.save(&buffer, "PNG"));
        CatalogueFixture starter(m_sandbox, u"starter.sqlite"_s);
        starter.film({u"Harbour Lights"_s}, 2019).withImdb(990019001);
        starter.film({u"Harbour Lights"_s}, 2019).withImdb(990019001).withPoster(encoded);
        starter.film({u"Brack"_s}, 2020, 1, 1).withImdb(990020005);
        starter.film({u"Damaged"_s}, 2020).withImdb(990020009).withPoster("no picture");
        starter.write();
        QFile::remove(m_own);
        m_service = std::make_unique<CatalogueMetadata>(
            QList<CataloguePlace>{{m_starter, Presence::Required}, {m_own, Presence::Optional}});
    }

    void filmAndItsPosterAreFound()
    {
        const Result<FindResult> found = find(u"tt990019001"_s);
        QVERIFY(found);
        QCOMPARE(found->movieResults.size(), 1);
        QVERIFY(found->tvResults.isEmpty() && found->personResults.isEmpty());
        const Result<QImage> poster = image(found->movieResults.first()); // of the row that has one
        QVERIFY(poster);
        QCOMPARE(poster->deviceIndependentSize().toSize(), QSize(154, 231));
        QCOMPARE(poster->pixelColor(10, 10), QColor(Qt::darkCyan));
    }

    void episodeIsATelevisionResult()
    {
        const Result<FindResult> found = find(u"990020005"_s);
        QVERIFY(found);
        QVERIFY(found->movieResults.isEmpty());
        QCOMPARE(found->tvResults.size(), 1);
        const Result<QImage> poster = image(found->tvResults.first());
        QVERIFY(!poster);
        QCOMPARE(poster.error().domain, u"Catalogue"_s);
    }

    void unknownFilmIsAnEmptyAnswer_data()
    {
        QTest::addColumn<QString>("id");
        for (const char *id : {"tt1234567", "nm0000001", "", "; DROP TABLE film"})
            QTest::newRow(id) << QString::fromLatin1(id);
    }
    void unknownFilmIsAnEmptyAnswer()
    {
        QFETCH(const QString, id);
        const Result<FindResult> found = find(id);
        QVERIFY(found);
        QVERIFY(found->movieResults.isEmpty() && found->tvResults.isEmpty());
    }

    void itemWithoutAPictureIsAnError()
    {
        const Result<FindResult> found = find(u"tt990020009"_s);
        QVERIFY(found && found->movieResults.size() == 1);
        for (const TmdbItem &item :
             {found->movieResults.first(), TmdbItem{}, TmdbItem{QVariantList{u"nowhere"_s, 1}}})
            QVERIFY(!image(item));
    }

    void ownCatalogueIsAskedToo()
    {
        writeOwn();
        QCOMPARE(find(u"tt990021002"_s)->movieResults.size(), 1);
    }

    void missingCatalogueIsAnErrorUnlessAnotherKnowsTheFilm()
    {
        QVERIFY(QFile::remove(m_starter));
        writeOwn();
        QVERIFY(find(u"tt990021002"_s));
        const Result<FindResult> none = find(u"tt990019001"_s);
        QVERIFY(!none);
        QVERIFY(none.error().localizedDescription.contains(m_starter));
    }
};

PLOVENDIX_TEST(CatalogueMetadataTest)
#include "CatalogueMetadataTest.moc"
