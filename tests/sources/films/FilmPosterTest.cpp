#include "FilmFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class FilmPosterTest final : public FilmFixture
{
    Q_OBJECT

private Q_SLOTS:
    void posterHasThePixelsOfTheScreen_data()
    {
        QTest::addColumn<double>("pixelRatio");
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("1") << 1.0 << QByteArray("/t/p/w154/film.jpg");
        QTest::newRow("2") << 2.0 << QByteArray("/t/p/w342/film.jpg");
        QTest::newRow("3") << 3.0 << QByteArray("/t/p/w500/film.jpg");
    }
    void posterHasThePixelsOfTheScreen()
    {
        QFETCH(const double, pixelRatio);
        ratio = pixelRatio;
        const QImage poster = posterOf()->value();
        QCOMPARE(poster.width(), static_cast<int>(154 * pixelRatio));
        QCOMPARE(poster.devicePixelRatio(), pixelRatio);
        QCOMPARE(poster.height(), poster.width() * 3 / 2);
        const ReceivedRequest request = imageRequests().constFirst();
        QTEST(request.target, "target");
        QVERIFY(request.header("Authorization").isEmpty());
    }

    void filmsWithoutAPosterAndForeignItemsHaveNone()
    {
        QCOMPARE(kindIn(*posterOf(u"tt9000004"_s)), ServiceFailure::Rejected);
        const auto picture = image({QVariantList{u"/some/catalogue"_s, 5}});
        QVERIFY(!picture->came());
        QCOMPARE(kindIn(*picture), ServiceFailure::Rejected);
        QCOMPARE(imageRequests().size(), 0);
    }

    void badPicturesAreRefusedAndNotKept_data()
    {
        QTest::addColumn<QString>("behaviour");
        for (const char *name : {"poster-html", "poster-cut", "poster-huge", "length-too-long@image",
                                 "empty@image", "not-modified@image", "20-mib@image", "gzip-bomb@image"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void badPicturesAreRefusedAndNotKept()
    {
        QFETCH(const QString, behaviour);
        standIn->select(behaviour);
        posterOf()->error();
        standIn->clearBehaviours();
        QVERIFY(!posterOf()->value().isNull());
    }

    void twoPicturesAtATime()
    {
        find()->value();
        standIn->select(u"silent@image"_s);
        const QList<Shown> pictures{imageAt("/a.jpg"), imageAt("/b.jpg"), imageAt("/c.jpg"),
                                    imageAt("/d.jpg")};
        // Time stands still while one is on the wire; these seconds are for the rate.
        QTRY_COMPARE_WITH_TIMEOUT(imageRequests().size(), 1, WaitLimit);
        // The next one waits for the rate once its place in the cache was looked at: it and two limits.
        QTRY_COMPARE_WITH_TIMEOUT(clock->pending().size(), 3, WaitLimit);
        clock->advance(2s);
        QTRY_COMPARE_WITH_TIMEOUT(imageRequests().size(), 2, WaitLimit);
        clock->advance(2s);
        QCOMPARE(clock->pending().size(), 4); // the limits of two requests and nothing else
        standIn->clearBehaviours();
        clock->advance(20s);
        for (const Shown &picture : pictures)
            QVERIFY(!picture->value().isNull());
    }

    void posterThatIsNoLongerWantedIsNotWaitedFor()
    {
        standIn->select(u"silent@image"_s);
        const QList<Shown> unwanted{posterOf(), imageAt("/b.jpg"), imageAt("/c.jpg")};
        QTRY_COMPARE_WITH_TIMEOUT(imageRequests().size(), 1, WaitLimit);
        standIn->clearBehaviours();
        QVERIFY(!posterOf()->value().isNull());
        for (const Shown &picture : unwanted)
            QVERIFY(!picture->came());
    }

    void serviceDyingDuringAPosterIsAnError()
    {
        standIn->select(u"drip@image"_s);
        const auto picture = posterOf();
        QTRY_COMPARE_WITH_TIMEOUT(imageRequests().size(), 1, WaitLimit);
        standIn->drip();
        standIn->stop();
        QCOMPARE(kindIn(*picture), ServiceFailure::Unavailable);
    }
};

PLOVENDIX_TEST(FilmPosterTest)
#include "FilmPosterTest.moc"
