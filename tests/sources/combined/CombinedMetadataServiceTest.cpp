#include <base/MainQueue.h>
#include <sources/combined/CombinedMetadataService.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/timing/Caught.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize Points(154, 154);

/// Knows some films, some of them without a picture.
class SmallLibrary final : public MetadataService
{
public:
    QStringList films;
    QStringList pictures; // by handle
    bool fails = false;
    QStringList asked;
    std::optional<QString> languageAsked;

    void findExternally(const QString &id, ExternalSource, FindCompletion completion) override
    {
        asked += id;
        languageAsked = preferredLanguage;
        FindResult result;
        if (films.contains(id))
            result.movieResults += TmdbItem{id};
        const Result<FindResult> answer =
            fails ? Result<FindResult>(base::Error{u"x"_s, 7, u"broken"_s}) : result;
        MainQueue::shared().async([=] { completion(answer); });
    }
    void fetchImage(const TmdbItem &item, ImageKind, const QSize &size, ImageCompletion completion) override
    {
        const bool has = pictures.contains(item.handle.toString());
        const QImage image(size, QImage::Format_RGB32);
        MainQueue::shared().async([=] {
            completion(has ? Result<QImage>(image) : Result<QImage>(base::Error{u"x"_s, 8, u"no picture"_s}));
        });
    }
};
} // namespace

class CombinedMetadataServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_near = std::make_shared<SmallLibrary>();
        m_far = std::make_shared<SmallLibrary>();
        m_asksFar = true;
        m_near->films = {u"tt1"_s, u"tt3"_s};
        m_near->pictures = {u"tt1"_s};
        m_far->films = {u"tt1"_s, u"tt2"_s, u"tt3"_s};
        m_far->pictures = {u"tt2"_s, u"tt3"_s};
        m_combined = std::make_unique<CombinedMetadataService>(
            QList<CombinedMetadataService::Source>{{m_near, {}}, {m_far, [this] { return m_asksFar; }}});
    }
    void cleanup()
    {
        m_combined.reset();
        MainQueue::shared().clear();
    }

    void firstThatHasItAnswers()
    {
        QCOMPARE(picturesOf(u"tt1"_s), u"picture"_s);
        QVERIFY(m_far->asked.isEmpty());
    }

    void laterOnesAreAskedForTheRest()
    {
        QCOMPARE(picturesOf(u"tt2"_s), u"picture"_s);
        QCOMPARE(m_near->asked, QStringList{u"tt2"_s});
    }

    void filmWithoutAPictureGetsALaterOnes() { QCOMPARE(picturesOf(u"tt3"_s), u"picture"_s); }

    void withoutTheNetworkItsOwnFailureStays()
    {
        m_asksFar = false;
        QCOMPARE(picturesOf(u"tt3"_s), u"no picture"_s);
        QCOMPARE(picturesOf(u"tt2"_s), u"not found"_s);
        QVERIFY(m_far->asked.isEmpty());
    }

    void failureIsPassedOver()
    {
        m_near->fails = true;
        QCOMPARE(picturesOf(u"tt2"_s), u"picture"_s);
        QCOMPARE(picturesOf(u"tt9"_s), u"broken"_s);
    }

    void unknownFilmIsAnEmptyAnswer() { QCOMPARE(picturesOf(u"tt9"_s), u"not found"_s); }

    void lookupThatEndsLateIsStillAnswered()
    {
        Caught<FindResult> first;
        Caught<FindResult> second;
        m_combined->findExternally(u"tt1"_s, ExternalSource::imdb, first.completion());
        m_combined->findExternally(u"tt3"_s, ExternalSource::imdb, second.completion());
        QTRY_VERIFY_WITH_TIMEOUT(second.came(), WaitLimit);
        QVERIFY(first.came());
        Caught<QImage> picture;
        m_combined->fetchImage((*first)->movieResults[0], ImageKind::Poster, Points, picture.completion());
        Caught<FindResult> third;
        m_combined->findExternally(u"tt9"_s, ExternalSource::imdb, third.completion());
        QTRY_VERIFY_WITH_TIMEOUT(third.came(), WaitLimit);
        QVERIFY(picture.came());
        QVERIFY(*picture);
    }

    /// A source may end a lookup for a later one, which must not be the one the person waits for.
    void earlierLookupAsksNoFurtherSource()
    {
        Caught<FindResult> first;
        Caught<FindResult> second;
        m_combined->findExternally(u"tt2"_s, ExternalSource::imdb, first.completion());
        m_combined->findExternally(u"tt1"_s, ExternalSource::imdb, second.completion());
        QTRY_VERIFY_WITH_TIMEOUT(second.came(), WaitLimit);
        MainQueue::shared().runUntilIdle();
        QCOMPARE(m_near->asked, QStringList({u"tt2"_s, u"tt1"_s}));
        QCOMPARE(m_far->asked, QStringList());
        QVERIFY(!first.came());
    }

    void pictureOfAnEarlierLookupAsksNoFurtherSource()
    {
        Caught<FindResult> first;
        Caught<FindResult> second;
        m_combined->findExternally(u"tt3"_s, ExternalSource::imdb, first.completion());
        QTRY_VERIFY_WITH_TIMEOUT(first.came(), WaitLimit);
        m_combined->findExternally(u"tt2"_s, ExternalSource::imdb, second.completion());
        Caught<QImage> picture; // that no source asked so far has
        m_combined->fetchImage((*first)->movieResults[0], ImageKind::Poster, Points, picture.completion());
        QTRY_VERIFY_WITH_TIMEOUT(second.came(), WaitLimit);
        MainQueue::shared().runUntilIdle();
        QCOMPARE(m_far->asked, QStringList{u"tt2"_s});
        QVERIFY(!picture.came());
    }

    void languageIsHandedOn()
    {
        m_combined->preferredLanguage = u"de"_s;
        QCOMPARE(picturesOf(u"tt2"_s), u"picture"_s);
        QCOMPARE(m_far->languageAsked, u"de"_s);
    }

    void foreignItemsHaveNoPicture()
    {
        for (const QVariant &handle :
             {QVariant(), QVariant(u"tt1"_s), QVariant(QVariantMap{{u"source"_s, 99}})}) {
            Caught<QImage> picture;
            m_combined->fetchImage({handle}, ImageKind::Poster, Points, picture.completion());
            QVERIFY(!picture.came());
            QTRY_VERIFY_WITH_TIMEOUT(picture.came(), WaitLimit);
            QVERIFY(!*picture);
        }
    }

    void serviceMayGoBeforeItsAnswers()
    {
        auto found = std::make_shared<Caught<FindResult>>();
        m_combined->findExternally(u"tt2"_s, ExternalSource::imdb, [found](const Result<FindResult> &result) {
            found->completion()(result);
        });
        m_combined.reset();
        MainQueue::shared().runUntilIdle();
        QVERIFY(!found->came());
    }

private:
    /// What comes of looking for a film and its picture.
    QString picturesOf(const QString &id)
    {
        Caught<FindResult> found;
        m_combined->findExternally(id, ExternalSource::imdb, found.completion());
        if (found.came() || !QTest::qWaitFor([&] { return found.came(); }, WaitLimit))
            return u"never"_s;
        if (!*found)
            return found->error().localizedDescription;
        if ((*found)->movieResults.isEmpty())
            return u"not found"_s;
        Caught<QImage> picture;
        m_combined->fetchImage((*found)->movieResults.first(), ImageKind::Poster, Points,
                               picture.completion());
        if (!QTest::qWaitFor([&] { return picture.came(); }, WaitLimit))
            return u"never"_s;
        return *picture ? u"picture"_s : picture->error().localizedDescription;
    }

    Sandbox m_sandbox;
    std::shared_ptr<SmallLibrary> m_near;
    std::shared_ptr<SmallLibrary> m_far;
    bool m_asksFar = true;
    std::unique_ptr<CombinedMetadataService> m_combined;
};

PLOVENDIX_TEST(CombinedMetadataServiceTest)
#include "CombinedMetadataServiceTest.moc"
