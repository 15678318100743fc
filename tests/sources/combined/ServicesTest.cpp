#include "ServiceDoubles.h"

#include <base/MainQueue.h>
#include <net/secrets/FileSecretStore.h>
#include <sources/combined/Services.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/StandIn.h>
#include <tests/support/timing/Caught.h>

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;

/// Everything together, on the machine's own clock, against the stand-in.
class ServicesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_standIn = std::make_unique<StandIn>();
        UserDefaults::setStandardFile(m_sandbox.path(u"settings/%1.conf"_s.arg(++m_turn)));
        UserDefaults::standard().setObject(u"SubtitleServiceURL"_s, m_standIn->subtitleURL().toString());
        UserDefaults::standard().setObject(u"MetadataServiceURL"_s, m_standIn->filmURL().toString());
        QDir(m_sandbox.path(u"xdg_cache_home"_s)).removeRecursively();
        m_secrets = std::make_shared<FileSecretStore>(m_sandbox.path(u"secrets%1"_s.arg(m_turn)));
    }
    void cleanup()
    {
        SubtitleService::setShared({});
        MetadataService::setShared({});
        m_services.reset();
        MainQueue::shared().clear();
        QCOMPARE(m_standIn->complaints(), QStringList());
    }

    void withoutAKeyOnlyTheCatalogueIsAsked()
    {
        start();
        QVERIFY(!m_services->asksTheNetwork());
        const auto result = search();
        QVERIFY(result);
        QCOMPARE(result->subtitles->size(), 0);
        QCOMPARE(m_standIn->main().requests().size(), 0);
    }

    void keyFromTheStoreOpensTheNetwork()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        QVERIFY(m_secrets->store(Secret::MetadataKey, QString::fromLatin1(FilmStandIn::Key)));
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_services->asksTheNetwork(), WaitLimit);
        const auto result = search();
        QVERIFY(result);
        QCOMPARE(result->subtitles->size(), 3);
        Caught<FindResult> found;
        MetadataService::shared().findExternally(u"tt9000002"_s, ExternalSource::imdb, found.completion());
        QTRY_VERIFY_WITH_TIMEOUT(found.came(), WaitLimit);
        QCOMPARE((*found)->movieResults.size(), 1);
        Caught<QImage> poster;
        MetadataService::shared().fetchImage((*found)->movieResults[0], ImageKind::Poster, {154, 154},
                                             poster.completion());
        QTRY_VERIFY_WITH_TIMEOUT(poster.came(), WaitLimit);
        QVERIFY(*poster);
    }

    void firstQueryWaitsForTheSecrets()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        start();
        QVERIFY(!m_services->asksTheNetwork());
        const auto result = search();
        QVERIFY(result);
        QCOMPARE(result->subtitles->size(), 3);
    }

    void storeIsLeftAloneUntilTheProgramRuns()
    {
        const auto store = std::make_shared<LockedStore>();
        start(store);
        QCOMPARE(store->reads, 0);
        QTRY_COMPARE_WITH_TIMEOUT(store->reads, 3, WaitLimit);
    }

    void lockedKeyringDoesNotHoldQueriesForLong()
    {
        start(std::make_shared<LockedStore>());
        QList<bool> told; // so that nobody takes these for the network's answers
        m_services->setObserver([&] { told += m_services->asksTheNetwork(); });
        const auto result = search();
        QVERIFY(result);
        QCOMPARE(result->subtitles->size(), 0);
        QCOMPARE(told, QList<bool>{false});
    }

    void savedSecretIsUsedAtOnceAndKept()
    {
        start();
        Caught<void> saved;
        m_services->saveSecret(Secret::SubtitleKey, SubtitleStandIn::ApiKey + u" \n"_s, saved.completion());
        QVERIFY(m_services->asksTheNetwork());
        const auto result = search();
        QVERIFY(result);
        QCOMPARE(result->subtitles->size(), 3);
        QTRY_VERIFY_WITH_TIMEOUT(saved.came(), WaitLimit);
        QVERIFY(*saved);
        QCOMPARE(m_secrets->find(Secret::SubtitleKey), SubtitleStandIn::ApiKey);
    }

    void whyTheSecretsCouldNotBeReadIsKnownUntilOneIsKept()
    {
        const QString path = m_sandbox.writeFile(u"secrets%1"_s.arg(m_turn), "{\"cut");
        start();
        QVERIFY(!m_services->readFailure());
        bool isTold = false;
        m_services->setObserver([&] { isTold = m_services->readFailure().has_value(); });
        QTRY_VERIFY_WITH_TIMEOUT(isTold, WaitLimit);
        QCOMPARE(m_services->readFailure()->localizedDescription,
                 u"The keys in “%1” cannot be read."_s.arg(path));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was damaged and is kept as"_s));
        Caught<void> saved;
        m_services->saveSecret(Secret::MetadataKey, u"films"_s, saved.completion());
        QTRY_VERIFY_WITH_TIMEOUT(saved.came(), WaitLimit);
        QVERIFY(*saved);
        QVERIFY(!m_services->readFailure());
    }

    void secretThatCannotBeKeptIsUsedUntilTheEnd()
    {
        start(std::make_shared<LockedStore>());
        Caught<void> saved;
        m_services->saveSecret(Secret::SubtitleKey, SubtitleStandIn::ApiKey, saved.completion());
        QTRY_VERIFY_WITH_TIMEOUT(saved.came(), WaitLimit);
        QVERIFY(!*saved);
        QVERIFY(m_services->asksTheNetwork());
        QCOMPARE(m_services->credentials().subtitleKey, SubtitleStandIn::ApiKey);
    }

    void whatWasSavedWhileTheStoreWasReadCounts()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, u"old"_s));
        QVERIFY(m_secrets->store(Secret::MetadataKey, u"films"_s));
        start();
        Caught<void> saved;
        m_services->saveSecret(Secret::SubtitleKey, u"new"_s, saved.completion());
        QTRY_COMPARE_WITH_TIMEOUT(m_services->credentials().metadataKey, u"films"_s, WaitLimit);
        QTRY_VERIFY_WITH_TIMEOUT(saved.came(), WaitLimit);
        QCOMPARE(m_services->credentials().subtitleKey, u"new"_s);
    }

    void environmentStaysInUse()
    {
        qputenv("PLOVENDIX_SUBTITLE_API_KEY", SubtitleStandIn::ApiKey.toUtf8());
        const auto forget = qScopeGuard([] { qunsetenv("PLOVENDIX_SUBTITLE_API_KEY"); });
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_services->asksTheNetwork(), WaitLimit);
        Caught<void> saved;
        m_services->saveSecret(Secret::SubtitleKey, u"other"_s, saved.completion());
        QTRY_VERIFY_WITH_TIMEOUT(saved.came(), WaitLimit);
        QCOMPARE(m_services->rest().settings().apiKey, SubtitleStandIn::ApiKey);
    }

    void environmentNeedsNoKeyring()
    {
        qputenv("PLOVENDIX_SUBTITLE_API_KEY", SubtitleStandIn::ApiKey.toUtf8() + '\n');
        const auto forget = qScopeGuard([] { qunsetenv("PLOVENDIX_SUBTITLE_API_KEY"); });
        start(std::make_shared<LockedStore>());
        QVERIFY(m_services->asksTheNetwork());
        const auto result = search();
        QVERIFY(result);
        QCOMPARE(result->subtitles->size(), 3);
    }

    void changedSettingsAreFollowed()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_services->asksTheNetwork(), WaitLimit);
        int changes = 0;
        m_services->setObserver([&] { ++changes; });
        UserDefaults::standard().setObject(u"SubtitleServiceUser"_s, u" reader "_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_services->rest().settings().userName, u"reader"_s, WaitLimit);
        const UserDefaults &defaults = UserDefaults::standard();
        UserDefaults::standard().setObject(u"SubtitleHearingImpaired"_s, u"preferred"_s);
        QCOMPARE(ServiceDefaults::rankingPreferences(defaults),
                 (RankingPreferences{Preference::Preferred, Preference::Avoided, Preference::Avoided}));
        QVERIFY(!m_services->rest().settings().asksForMachineTranslated);
        UserDefaults::standard().setObject(u"SubtitleMachineTranslated"_s, u"neutral"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_services->rest().settings().asksForMachineTranslated, WaitLimit);
        UserDefaults::standard().setObject(u"SubtitleServiceURL"_s, u"https://other.example/api"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_services->rest().settings().base, QUrl(u"https://other.example/api"_s),
                                  WaitLimit);
        QCOMPARE(changes, 4);
    }

    void keyTakenAwayClosesTheNetwork()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_services->asksTheNetwork(), WaitLimit);
        QVERIFY(m_secrets->store(Secret::SubtitleKey, {}));
        m_services->reloadSecrets();
        QTRY_VERIFY_WITH_TIMEOUT(!m_services->asksTheNetwork(), WaitLimit);
    }

    void localRowsSayWhyThereAreNoOthers_data()
    {
        QTest::addColumn<QString>("address"); // empty for the service that is there
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("missing");
        const QString good = SubtitleStandIn::ApiKey;
        using Missing = ServiceStatus::Missing;
        QTest::newRow("no such host") << u"https://no-such-host.invalid/api/v1"_s << good << u"eng"_s
                                      << static_cast<int>(Missing::ByBeingOffline);
        QTest::newRow("nobody listens")
            << u"http://127.0.0.1:1/api/v1"_s << good << u"eng"_s << static_cast<int>(Missing::ByAFailure);
        QTest::newRow("wrong key") << QString() << u"another-key"_s << u"eng"_s
                                   << static_cast<int>(Missing::KeyRejected);
        QTest::newRow("language nobody has there")
            << QString() << good << u"mlt"_s << static_cast<int>(Missing::ByTheLanguage);
        QTest::newRow("all is well") << QString() << good << u"eng"_s << static_cast<int>(Missing::Nothing);
    }
    void localRowsSayWhyThereAreNoOthers()
    {
        QFETCH(const QString, address);
        QFETCH(const QString, key);
        QFETCH(const QString, language);
        if (!address.isEmpty())
            UserDefaults::standard().setObject(u"SubtitleServiceURL"_s, address);
        start(m_secrets, std::make_shared<SmallCatalogue>());
        int told = 0;
        m_services->setAnswerObserver([&told] { ++told; });
        m_services->saveSecret(Secret::SubtitleKey, key, [](const Result<void> &) {});
        const Result<QueryResult> found = search(language);
        QVERIFY(found);
        QVERIFY(!found->subtitles->isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(told, 1, WaitLimit);
        QTEST(static_cast<int>(m_services->missing()), "missing");
    }

    void standardAddressesArePublic()
    {
        UserDefaults::standard().removeObject(u"SubtitleServiceURL"_s);
        UserDefaults::standard().removeObject(u"MetadataServiceURL"_s);
        start();
        QCOMPARE(m_services->rest().settings().base, QUrl(u"https://api.opensubtitles.com/api/v1"_s));
        QCOMPARE(ServiceDefaults::filmSettings(UserDefaults::standard(), {}).base,
                 QUrl(u"https://api.themoviedb.org/3"_s));
    }

    void secretsAreNotInTheSettings()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_services->asksTheNetwork(), WaitLimit);
        UserDefaults::standard().synchronize();
        QFile file(UserDefaults::standard().path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains(SubtitleStandIn::ApiKey.toLatin1()));
    }

    void logOutAtTheEnd()
    {
        logIn();
        bool done = false;
        m_services->shutDown([&] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, WaitLimit);
        QCOMPARE(m_standIn->requests("/api/v1/logout").size(), 1);
    }

    void logOutCancelsWaitingRequests()
    {
        logIn();
        m_standIn->select(u"silent"_s);
        const qsizetype before = m_standIn->requests("/api/v1/subtitles").size();
        for (int number = 0; number < Transport::ConnectionsAtAHost; ++number)
            SubtitleService::shared().query(
                {{Param::text, u"paper %1"_s.arg(number)}, {Param::language, u"eng"_s}},
                [](const Result<QueryResult> &) {});
        QTRY_COMPARE_WITH_TIMEOUT(m_standIn->requests("/api/v1/subtitles").size(),
                                  before + Transport::ConnectionsAtAHost, WaitLimit);
        bool done = false;
        m_services->shutDown([&] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, WaitLimit);
        QCOMPARE(m_standIn->requests("/api/v1/logout").size(), 1);
    }

    void filmsAreAskedForInTheStoredLanguageFromTheStart()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QVERIFY(m_secrets->store(Secret::MetadataKey, QString::fromLatin1(FilmStandIn::Token)));
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_services->films().hasKey(), WaitLimit);
        Caught<FindResult> found;
        MetadataService::shared().findExternally(u"tt9000002"_s, ExternalSource::imdb, found.completion());
        QTRY_VERIFY_WITH_TIMEOUT(found.came(), WaitLimit);
        QCOMPARE(m_standIn->main().requests().constLast().query(), "external_source=imdb_id&language=de");
    }

    void pauseIsKnownWhileASearchWaits()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        m_standIn->select(u"too-fast"_s);
        start();
        QList<qint64> pauses;
        m_services->setAnswerObserver(
            [&] { pauses += m_services->pause() ? m_services->pause()->count() : 0; });
        const auto result = search();
        QVERIFY(!result);
        QCOMPARE(kindOf(result.error()), ServiceFailure::TooManyRequests);
        pauses.removeAll(0);
        QCOMPARE(pauses, (QList<qint64>{1, 1})); // after the first try and the second
        QVERIFY(!m_services->pause());
    }

    void longPauseIsTheReasonForLocalRows()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        m_standIn->select(u"too-fast-hour"_s);
        start(m_secrets, std::make_shared<SmallCatalogue>());
        const auto result = search();
        QVERIFY(result);
        QCOMPARE(result->subtitles->size(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(m_services->missing(), ServiceStatus::Missing::ByAPause, WaitLimit);
        QVERIFY2(m_services->missingReason().contains(u"Try again from "_s),
                 qPrintable(m_services->missingReason()));
    }

private:
    /// As a download does.
    void logIn()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        QVERIFY(m_secrets->store(Secret::SubtitlePassword, SubtitleStandIn::Password));
        UserDefaults::standard().setObject(u"SubtitleServiceUser"_s, SubtitleStandIn::UserName);
        start();
        QTRY_VERIFY_WITH_TIMEOUT(m_services->asksTheNetwork(), WaitLimit);
        const auto result = search();
        QVERIFY(result);
        Caught<QUrl> file;
        SubtitleService::shared().download(result->subtitles->constFirst(), file.completion());
        QTRY_VERIFY_WITH_TIMEOUT(file.came(), WaitLimit);
        QVERIFY(*file);
    }

    void start() { start(m_secrets); }
    void start(const std::shared_ptr<SecretStore> &secrets,
               const std::shared_ptr<SubtitleService> &catalogue = std::make_shared<EmptyCatalogue>())
    {
        m_services = std::make_unique<Services>(
            Services::Parts{catalogue, u"catalogue"_s, std::make_shared<EmptyMetadata>(), secrets});
        m_services->install();
    }

    static Result<QueryResult> search(const QString &language = u"eng"_s)
    {
        auto result = std::make_shared<Result<QueryResult>>(base::Error{u"test"_s, 1, u"never answered"_s});
        auto came = std::make_shared<std::atomic<bool>>(false);
        SubtitleService::shared().query({{Param::text, u"paper lighthouse"_s}, {Param::language, language}},
                                        [result, came](const Result<QueryResult> &answer) {
                                            *result = answer;
                                            *came = true;
                                        });
        return QTest::qWaitFor([&] { return came->load(); }, WaitLimit)
                   ? *result
                   : base::Error{u"test"_s, 1, u"never answered"_s};
    }

    Sandbox m_sandbox;
    std::unique_ptr<StandIn> m_standIn;
    std::shared_ptr<FileSecretStore> m_secrets;
    std::unique_ptr<Services> m_services;
    int m_turn = 0;
};

PLOVENDIX_TEST(ServicesTest)
#include "ServicesTest.moc"
