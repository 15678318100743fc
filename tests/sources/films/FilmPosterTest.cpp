#include "FilmFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class FilmPosterTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<FilmFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void posterHasThePixelsOfTheScreen_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("1") << 1.0 << QByteArray("/t/p/w154/film.jpg");
        QTest::newRow("2") << 2.0 << QByteArray("/t/p/w342/film.jpg");
        QTest::newRow("3") << 3.0 << QByteArray("/t/p/w500/film.jpg");
    }
    void posterHasThePixelsOfTheScreen()
    {
        QFETCH(const double, ratio);
        QFETCH(const QByteArray, target);
        m_fixture->ratio = ratio;
        const auto picture = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
        QVERIFY2(**picture, **picture ? "" : qPrintable((*picture)->error().detail));
        const QImage poster = ***picture;
        QCOMPARE(poster.width(), static_cast<int>(154 * ratio));
        QCOMPARE(poster.devicePixelRatio(), ratio);
        QCOMPARE(poster.height(), poster.width() * 3 / 2);
        const ReceivedRequest request = m_fixture->standIn.images().requests().constFirst();
        QCOMPARE(request.target, target);
        QVERIFY(request.header("Authorization").isEmpty());
    }

    void filmWithoutAPosterHasNone()
    {
        const auto picture = m_fixture->posterOf(u"tt9000004"_s);
        QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
        QVERIFY(!**picture);
        QCOMPARE(m_fixture->standIn.images().requests().size(), 0);
    }

    void foreignItemsHaveNone()
    {
        const auto picture = m_fixture->image({QVariantList{u"/some/catalogue"_s, 5}});
        QVERIFY(!picture->came());
        QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
        QVERIFY(!**picture);
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
        m_fixture->standIn.select(behaviour);
        const auto picture = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
        QVERIFY(!**picture);
        m_fixture->standIn.clearBehaviours();
        const auto again = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(again->came(), WaitLimit);
        QVERIFY(**again);
    }

    void twoPicturesAtATime()
    {
        const auto found = m_fixture->find(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        m_fixture->standIn.select(u"silent@image"_s);
        QList<std::shared_ptr<Caught<QImage>>> pictures;
        for (const char *path : {"/a.jpg", "/b.jpg", "/c.jpg", "/d.jpg"})
            pictures += m_fixture->image({QVariantMap{{u"poster"_s, QString::fromLatin1(path)}}});
        // Time stands still while one is on the wire; these seconds are for the rate.
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.images().requests().size(), 1, WaitLimit);
        // The next one waits for the rate once its place in the cache was looked at: it and two limits.
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->clock.pending().size(), 3, WaitLimit);
        m_fixture->clock.advance(2s);
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.images().requests().size(), 2, WaitLimit);
        m_fixture->clock.advance(2s);
        QCOMPARE(m_fixture->clock.pending().size(), 4); // the limits of two requests and nothing else
        m_fixture->standIn.clearBehaviours();
        m_fixture->clock.advance(20s);
        for (const auto &picture : pictures) {
            QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
            QVERIFY(**picture);
        }
    }

    void posterThatIsNoLongerWantedIsNotWaitedFor()
    {
        m_fixture->standIn.select(u"silent@image"_s);
        const auto first = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.images().requests().size(), 1, WaitLimit);
        const auto alsoFirst = m_fixture->image({QVariantMap{{u"poster"_s, u"/b.jpg"_s}}});
        const auto waiting = m_fixture->image({QVariantMap{{u"poster"_s, u"/c.jpg"_s}}});
        m_fixture->standIn.clearBehaviours();
        const auto second = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_VERIFY_WITH_TIMEOUT(second->came(), WaitLimit);
        QVERIFY(**second);
        QVERIFY(!first->came());
        QVERIFY(!alsoFirst->came());
        QVERIFY(!waiting->came());
    }

    void serviceDyingDuringAPosterIsSaid()
    {
        m_fixture->standIn.select(u"drip@image"_s);
        const auto picture = m_fixture->posterOf(u"tt9000002"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.images().requests().size(), 1, WaitLimit);
        m_fixture->standIn.drip();
        m_fixture->standIn.stop();
        QTRY_VERIFY_WITH_TIMEOUT(picture->came(), WaitLimit);
        QCOMPARE(kindIn(*picture), ServiceFailure::Unavailable);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<FilmFixture> m_fixture;
};

PLOVENDIX_TEST(FilmPosterTest)
#include "FilmPosterTest.moc"
