#include "RestFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Settings that change while something is under way: it ends as it began.
class RestChangedSettingsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_fixture = std::make_unique<RestFixture>(m_sandbox);
        m_other = std::make_unique<StandIn>(StandInTime{[this] { return m_fixture->clock.now().count(); },
                                                        [this] { return m_fixture->clock.date(); }});
    }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints() + m_other->complaints(), QStringList());
        m_fixture.reset();
        m_other.reset();
    }

    void searchEndsAtTheServiceItBeganAt()
    {
        m_fixture->standIn.select(u"hits-51"_s);
        changeAtFirst("/api/v1/subtitles");
        const auto caught = m_fixture->search();
        QCOMPARE(caught->value().subtitles->size(), 51);
        QCOMPARE(m_fixture->standIn.requests("/api/v1/subtitles").size(), 2);
        QCOMPARE(m_other->main().requests().size(), 0);
    }

    void eachServiceHasItsOwnKeptAnswers()
    {
        m_fixture->standIn.select(u"hits-51"_s);
        m_other->select(u"hits-51"_s);
        changeAtFirst("/api/v1/subtitles");
        const auto first = m_fixture->search();
        first->value();
        m_fixture->search()->value();
        QCOMPARE(m_other->requests("/api/v1/subtitles").size(), 2);
        // What the first one said is found again where it was kept, both pages of it.
        m_fixture->standIn.main().forgetRequests();
        m_fixture->settings.base = m_fixture->standIn.subtitleURL();
        m_fixture->service->setSettings(m_fixture->settings);
        const auto third = m_fixture->search();
        QCOMPARE(third->value().subtitles->size(), 51);
        QCOMPARE(m_fixture->standIn.main().requests().size(), 0);
    }

    void searchEndsWithTheKeyItBeganWith()
    {
        m_fixture->standIn.select(u"hits-51"_s);
        m_fixture->standIn.main().setObserver([this](const ReceivedRequest &, const ServedAnswer &) {
            m_fixture->settings.apiKey = u"some-other-key"_s;
            m_fixture->service->setSettings(m_fixture->settings);
        });
        const auto caught = m_fixture->search();
        QCOMPARE(caught->value().subtitles->size(), 51);
        for (const ReceivedRequest &request : m_fixture->standIn.main().requests())
            QCOMPARE(request.header("Api-Key"), SubtitleStandIn::ApiKey.toLatin1());
    }

    void downloadEndsWhereItsLoginWas_data()
    {
        QTest::addColumn<QByteArray>("changeAt");
        QTest::newRow("login") << QByteArray("/api/v1/login");
        QTest::newRow("order") << QByteArray("/api/v1/download");
    }
    void downloadEndsWhereItsLoginWas()
    {
        QFETCH(const QByteArray, changeAt);
        m_fixture->useAccount();
        changeAtFirst(changeAt);
        m_fixture->download(m_fixture->subtitle())->value();
        QCOMPARE(m_fixture->standIn.requests("/api/v1/login").size(), 1);
        QCOMPARE(m_fixture->standIn.requests("/api/v1/download").size(), 1);
        QCOMPARE(m_fixture->standIn.links().requests().size(), 1);
        QCOMPARE(m_other->main().requests().size(), 0);
        // What is left there is not what is left here.
        QVERIFY(!m_fixture->service->quota().remaining);
    }

    void downloadAskedForAfterwardsIsOneOfItsOwn()
    {
        m_fixture->standIn.select(u"silent@download"_s);
        const auto before = m_fixture->download(m_fixture->subtitle());
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.requests("/api/v1/download").size(), 1, WaitLimit);
        change();
        const auto after = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT(m_fixture->comesInTime(*after), WaitLimit);
        QVERIFY(**after);
        QCOMPARE(m_other->requests("/api/v1/download").size(), 1);
        QVERIFY(!before->came());
    }

    void resultOfAnotherServiceIsNotOrderedByItsNumber()
    {
        const auto found = m_fixture->search();
        const SubtitlePtr row = found->value().subtitles->constFirst();
        const QUrl address = m_fixture->settings.base;
        change();
        const auto elsewhere = m_fixture->download(row);
        elsewhere->error();
        QVERIFY2(elsewhere->error().localizedDescription.contains(u"not in use now"_s),
                 qPrintable(elsewhere->error().localizedDescription));
        QCOMPARE(m_other->main().requests().size(), 0);
        QCOMPARE(m_fixture->standIn.requests("/api/v1/download").size(), 0);
        // Where it came from it is to be had, however that address is written.
        m_fixture->settings.base = QUrl(address.toString() + u'/');
        m_fixture->service->setSettings(m_fixture->settings);
        m_fixture->download(row)->value();
    }

    void fileFetchedFromAnotherServiceIsStillToBeHad()
    {
        const auto found = m_fixture->search();
        const SubtitlePtr row = found->value().subtitles->constFirst();
        m_fixture->download(row)->value();
        change();
        m_fixture->download(row)->value();
        QCOMPARE(m_other->main().requests().size(), 0);
    }

    void paidLinkOfAnotherServiceIsNotUsed()
    {
        m_fixture->standIn.select(u"subtitle-html"_s);
        m_fixture->download(m_fixture->subtitle())->error();
        change();
        m_fixture->download(m_fixture->subtitle())->value();
        QCOMPARE(m_fixture->standIn.links().requests().size(), 1);
        QCOMPARE(m_other->links().requests().size(), 1);
    }

    void connectionTestIsOfWhatItBeganWith()
    {
        m_fixture->useAccount();
        changeAtFirst("/api/v1/login");
        const auto caught = std::make_shared<Caught<RestReport>>();
        m_fixture->service->testConnection(
            [caught](const Result<RestReport> &report) { caught->completion()(report); });
        caught->value();
        QVERIFY(caught->value().isLoggedIn);
        QCOMPARE(caught->value().quota.remaining, 20);
        QVERIFY(!m_fixture->service->quota().remaining);
        QCOMPARE(m_other->main().requests().size(), 0);
    }

    void languagesAreThoseOfTheServiceThatIsAsked()
    {
        const auto searchIn = [this](const QString &language) {
            return m_fixture->query({{Param::text, u"paper lighthouse"_s}, {Param::language, language}});
        };
        m_fixture->service->followLanguages();
        searchIn(u"eng"_s)->value();
        QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.requests("/api/v1/infos/languages").size(), 1,
                                  WaitLimit);
        // Abkhaz is not on its list, which takes a moment to be read.
        QTRY_VERIFY_WITH_TIMEOUT(isUnknown(searchIn(u"abk"_s)), WaitLimit);
        change();
        searchIn(u"abk"_s)->value();
        QCOMPARE(m_other->requests("/api/v1/subtitles").size(), 1);
    }

    void passwordEnteredLastMakesUsedUpDownloadsWorthAsking()
    {
        m_fixture->useAccount(SubtitleStandIn::UserName, {}); // nobody in particular so far
        m_fixture->standIn.select(u"quota-used"_s);
        QCOMPARE(kindOf(*m_fixture->download(m_fixture->subtitle())), ServiceFailure::LimitReached);
        m_fixture->standIn.clearBehaviours();
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle())->value();
    }

    void refusedPasswordIsNotSentAgainLater_data()
    {
        using Change = std::function<void(RestSettings &)>;
        QTest::addColumn<Change>("somethingElse");
        QTest::newRow("another key") << Change([](RestSettings &settings) { settings.apiKey = u"other"_s; });
        QTest::newRow("another password")
            << Change([](RestSettings &settings) { settings.password = u"other"_s; });
        QTest::newRow("another address")
            << Change([this](RestSettings &settings) { settings.base = m_other->subtitleURL(); });
    }
    void refusedPasswordIsNotSentAgainLater()
    {
        QFETCH(const std::function<void(RestSettings &)>, somethingElse);
        m_fixture->useAccount(SubtitleStandIn::UserName, u"wrong-word"_s);
        m_fixture->download(m_fixture->subtitle())->error();
        const RestSettings before = m_fixture->settings;
        somethingElse(m_fixture->settings);
        m_fixture->service->setSettings(m_fixture->settings);
        m_fixture->settings = before;
        m_fixture->service->setSettings(before);
        QCOMPARE(kindOf(*m_fixture->download(m_fixture->subtitle())), ServiceFailure::LoginRefused);
        QCOMPARE(m_fixture->standIn.requests("/api/v1/login").size(), 1);
    }

    void refusedPasswordIsNotSentByWhoWaitedMeanwhile()
    {
        m_fixture->useAccount(SubtitleStandIn::UserName, u"wrong-word"_s);
        const auto first = m_fixture->download(m_fixture->subtitle());
        m_fixture->settings.apiKey = u"other"_s;
        m_fixture->service->setSettings(m_fixture->settings);
        m_fixture->settings.apiKey = SubtitleStandIn::ApiKey;
        m_fixture->service->setSettings(m_fixture->settings);
        const auto second = m_fixture->download(m_fixture->subtitle());
        QTRY_VERIFY_WITH_TIMEOUT(first->came() && second->came(), WaitLimit);
        QCOMPARE(kindOf(*first), ServiceFailure::LoginRefused);
        QCOMPARE(kindOf(*second), ServiceFailure::LoginRefused);
        QCOMPARE(m_fixture->standIn.requests("/api/v1/login").size(), 1);
    }

    void passwordRefusedByOneServiceIsTriedAtAnother()
    {
        m_fixture->useAccount(SubtitleStandIn::UserName, u"wrong-word"_s);
        m_fixture->download(m_fixture->subtitle())->error();
        change();
        m_fixture->download(m_fixture->subtitle())->error();
        QCOMPARE(m_other->requests("/api/v1/login").size(), 1);
    }

    void otherPreferencesKeepTheLogin()
    {
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle(1))->value();
        m_fixture->settings.keepsOriginalBytes = true;
        m_fixture->settings.asksForMachineTranslated = true;
        m_fixture->service->setSettings(m_fixture->settings);
        QCOMPARE(m_fixture->service->quota().remaining, 19);
        m_fixture->download(m_fixture->subtitle(2))->value();
        QCOMPARE(m_fixture->standIn.requests("/api/v1/login").size(), 1);
    }

    void logsOutOfEveryServer()
    {
        m_fixture->useAccount();
        m_fixture->download(m_fixture->subtitle())->value();
        change();
        m_fixture->download(m_fixture->subtitle())->value();
        int done = 0;
        m_fixture->service->shutDown([&] { ++done; });
        QTRY_COMPARE_WITH_TIMEOUT(done, 1, WaitLimit);
        QCOMPARE(m_fixture->standIn.requests("/api/v1/logout").size(), 1);
        QCOMPARE(m_other->requests("/api/v1/logout").size(), 1);
    }

private:
    void change()
    {
        m_fixture->settings.base = m_other->subtitleURL();
        m_fixture->service->setSettings(m_fixture->settings);
    }
    /// Changes the address while the first request to `path` is being answered.
    void changeAtFirst(const QByteArray &path)
    {
        m_fixture->standIn.main().setObserver(
            [this, path](const ReceivedRequest &request, const ServedAnswer &) {
                if (request.path() == path)
                    change();
            });
    }
    bool isUnknown(const std::shared_ptr<Caught<QueryResult>> &caught) const
    {
        if (!QTest::qWaitFor([&] { return caught->came(); }, WaitLimit))
            return false;
        return !**caught && kindOf(*caught) == ServiceFailure::UnknownLanguage;
    }

    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
    std::unique_ptr<StandIn> m_other;
};

PLOVENDIX_TEST(RestChangedSettingsTest)
#include "RestChangedSettingsTest.moc"
