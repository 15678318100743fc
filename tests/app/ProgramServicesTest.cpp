#include <app/ProgramServices.h>
#include <base/MainQueue.h>
#include <net/secrets/FileSecretStore.h>
#include <sources/catalogue/CatalogueService.h>
#include <tests/support/FakeSecretStore.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <tests/support/standin/StandIn.h>
#include <tests/support/timing/Caught.h>

#include <QDir>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

using Item = ServiceAccounts::Item;

/// Everything together, on the machine's own clock, against the stand-in.
class ProgramServicesTest final : public QObject
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
        m_locked = std::make_shared<FakeSecretStore>();
        m_locked->answersReads = false;
        m_locked->failure = base::Error{u"test"_s, 1, u"locked"_s};
        ServiceStatus::shared().setValue({});
    }
    void cleanup()
    {
        m_services.reset();
        MainQueue::shared().clear();
        QCOMPARE(m_standIn->complaints(), QStringList());
    }

    void withoutAKeyOnlyTheCatalogueIsAsked()
    {
        start();
        QCOMPARE(search().value().subtitles->size(), 0);
        QCOMPARE(m_standIn->main().requests().size(), 0);
        QVERIFY(!status().asksTheNetwork);
    }

    void keyFromTheStoreOpensTheNetwork()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        QVERIFY(m_secrets->store(Secret::MetadataKey, QString::fromLatin1(FilmStandIn::Key)));
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        start();
        QVERIFY(!hasKey()); // the first query waits for the secrets
        QCOMPARE(search().value().subtitles->size(), 3);
        QVERIFY(status().asksTheNetwork);
        Caught<FindResult> found;
        MetadataService::shared().findExternally(u"tt9000002"_s, ExternalSource::imdb, found.completion());
        QCOMPARE(found.value().movieResults.size(), 1);
        QVERIFY(m_standIn->main().requests().constLast().query().endsWith("&language=de"));
        Caught<QImage> poster;
        MetadataService::shared().fetchImage(found.value().movieResults[0], ImageKind::Poster, {154, 154},
                                             poster.completion());
        QVERIFY(!poster.value().isNull());
    }

    void lockedKeyringDoesNotHoldQueriesForLong()
    {
        start(m_locked);
        QCOMPARE(m_locked->asked, QStringList()); // until the program runs
        int changes = 0;
        connect(m_services.get(), &ServiceAccounts::changed, this, [&] { ++changes; });
        QCOMPARE(search().value().subtitles->size(), 0);
        QCOMPARE(m_locked->asked.size(), 3);
        QCOMPARE(changes, 1);
        QVERIFY(!status().asksTheNetwork); // so that these are not taken for the network's answers
    }

    void savedSecretIsUsedAtOnceAndKept()
    {
        start();
        Caught<void> saved;
        m_services->setText(Item::SubtitleKey, SubtitleStandIn::ApiKey + u" \n"_s, saved.completion());
        QVERIFY(status().asksTheNetwork);
        QCOMPARE(m_services->text(Item::SubtitleKey), SubtitleStandIn::ApiKey);
        QCOMPARE(search().value().subtitles->size(), 3);
        saved.value();
        QCOMPARE(m_secrets->lookUp(Secret::SubtitleKey).value(), SubtitleStandIn::ApiKey);
        UserDefaults::standard().synchronize();
        QFile settings(UserDefaults::standard().path());
        QVERIFY(settings.open(QIODevice::ReadOnly));
        QVERIFY(!settings.readAll().contains(SubtitleStandIn::ApiKey.toLatin1()));
        m_services->setText(Item::SubtitleKey, {}, [](const Result<void> &) {});
        QVERIFY(!status().asksTheNetwork);
    }

    void whyTheSecretsCouldNotBeReadIsKnownUntilOneIsKept()
    {
        const QString path = m_sandbox.writeFile(u"secrets%1"_s.arg(m_turn), "{\"cut");
        start();
        QCOMPARE(m_services->whyUnread(), QString());
        QTRY_COMPARE_WITH_TIMEOUT(m_services->whyUnread(), u"The keys in “%1” cannot be read."_s.arg(path),
                                  WaitLimit);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"was damaged and is kept as"_s));
        Caught<void> saved;
        m_services->setText(Item::MetadataKey, u"films"_s, saved.completion());
        saved.value();
        QCOMPARE(m_services->whyUnread(), QString());
    }

    void secretThatCannotBeKeptIsUsedUntilTheEnd()
    {
        start(m_locked);
        Caught<void> saved;
        m_services->setText(Item::SubtitleKey, SubtitleStandIn::ApiKey, saved.completion());
        QCOMPARE(saved.error().localizedDescription, u"locked"_s);
        QVERIFY(hasKey());
        QCOMPARE(m_services->text(Item::SubtitleKey), SubtitleStandIn::ApiKey);
    }

    void whatWasSavedWhileTheStoreWasReadCounts()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, u"old"_s));
        QVERIFY(m_secrets->store(Secret::MetadataKey, u"films"_s));
        start();
        Caught<void> saved;
        m_services->setText(Item::SubtitleKey, u"new"_s, saved.completion());
        QTRY_COMPARE_WITH_TIMEOUT(m_services->text(Item::MetadataKey), u"films"_s, WaitLimit);
        saved.value();
        QCOMPARE(m_services->text(Item::SubtitleKey), u"new"_s);
    }

    void environmentNeedsNoKeyringAndStaysInUse()
    {
        qputenv("PLOVENDIX_SUBTITLE_API_KEY", SubtitleStandIn::ApiKey.toUtf8() + '\n');
        const auto forget = qScopeGuard([] { qunsetenv("PLOVENDIX_SUBTITLE_API_KEY"); });
        start(m_locked);
        QVERIFY(hasKey());
        QVERIFY(m_services->isFixed(Item::SubtitleKey));
        QVERIFY(!m_services->isFixed(Item::MetadataKey));
        QCOMPARE(search().value().subtitles->size(), 3);
        m_services->setText(Item::SubtitleKey, u"other"_s, [](const Result<void> &) {});
        QCOMPARE(m_services->restSettings().apiKey, SubtitleStandIn::ApiKey);
    }

    void changedSettingsAreFollowed()
    {
        start();
        int changes = 0;
        connect(m_services.get(), &ServiceAccounts::changed, this, [&] { ++changes; });
        QTRY_COMPARE_WITH_TIMEOUT(changes, 1, WaitLimit); // the secrets are read
        UserDefaults &defaults = UserDefaults::standard();
        const RestSettings &settings = m_services->restSettings();
        defaults.setObject(u"SubtitleServiceUser"_s, u" reader "_s);
        QTRY_COMPARE_WITH_TIMEOUT(settings.userName, u"reader"_s, WaitLimit);
        defaults.setObject(u"SubtitleHearingImpaired"_s, u"preferred"_s);
        QCOMPARE(ServiceDefaults::rankingPreferences(defaults),
                 (RankingPreferences{Preference::Preferred, Preference::Avoided, Preference::Avoided}));
        QVERIFY(!settings.asksForMachineTranslated);
        defaults.setObject(u"SubtitleMachineTranslated"_s, u"neutral"_s);
        QTRY_VERIFY_WITH_TIMEOUT(settings.asksForMachineTranslated, WaitLimit);
        defaults.setObject(u"SubtitleServiceURL"_s, u"https://other.example/api"_s);
        QTRY_COMPARE_WITH_TIMEOUT(settings.base, QUrl(u"https://other.example/api"_s), WaitLimit);
        QCOMPARE(changes, 5);
        defaults.removeObject(u"SubtitleServiceURL"_s);
        defaults.removeObject(u"MetadataServiceURL"_s);
        QTRY_COMPARE_WITH_TIMEOUT(settings.base, QUrl(u"https://api.opensubtitles.com/api/v1"_s), WaitLimit);
        QCOMPARE(ServiceDefaults::filmSettings(defaults, {}).base, QUrl(u"https://api.themoviedb.org/3"_s));
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
        start(m_secrets, 1);
        m_services->setText(Item::SubtitleKey, key, [](const Result<void> &) {});
        const QueryResult found = search(language).value();
        QVERIFY(!found.subtitles->isEmpty());
        QTEST(static_cast<int>(status().missing), "missing");
        QCOMPARE(status().reason, QString());
    }

    void longPauseIsTheReasonForLocalRows()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        m_standIn->select(u"too-fast-hour"_s);
        start(m_secrets, 2001);
        QCOMPARE(search().value().subtitles->size(), 2000);
        QCOMPARE(status().leftOut, 1);
        QCOMPARE(status().missing, ServiceStatus::Missing::ByAPause);
        QVERIFY2(status().reason.contains(u"Try again from "_s), qPrintable(status().reason));
    }

    void pauseIsKnownWhileASearchWaits()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        m_standIn->select(u"too-fast"_s);
        start();
        QList<std::optional<std::chrono::seconds>> pauses;
        connect(&ServiceStatus::shared(), &ServiceStatus::changed, m_services.get(), [&] {
            if (pauses.isEmpty() || pauses.last() != status().pause)
                pauses += status().pause;
        });
        const auto result = search();
        QVERIFY(!result);
        QCOMPARE(kindOf(result.error()), ServiceFailure::TooManyRequests);
        const std::optional<std::chrono::seconds> none;
        const std::optional<std::chrono::seconds> second(1);
        QCOMPARE(pauses, (QList{second, none, second, none})); // after the first try and the second
    }

    void logOutCancelsWaitingRequests()
    {
        QVERIFY(m_secrets->store(Secret::SubtitleKey, SubtitleStandIn::ApiKey));
        QVERIFY(m_secrets->store(Secret::SubtitlePassword, SubtitleStandIn::Password));
        UserDefaults::standard().setObject(u"SubtitleServiceUser"_s, SubtitleStandIn::UserName);
        start();
        Caught<QUrl> file; // a download logs in
        SubtitleService::shared().download(search().value().subtitles->constFirst(), file.completion());
        file.value();
        QVERIFY(status().remainingDownloads);
        m_standIn->select(u"silent"_s);
        const qsizetype before = m_standIn->requests("/api/v1/subtitles").size();
        for (int number = 0; number < RequestQueue::ConnectionsAtAHost; ++number)
            SubtitleService::shared().query(
                {{Param::text, u"paper %1"_s.arg(number)}, {Param::language, u"eng"_s}},
                [](const Result<QueryResult> &) {});
        QTRY_COMPARE_WITH_TIMEOUT(m_standIn->requests("/api/v1/subtitles").size(),
                                  before + RequestQueue::ConnectionsAtAHost, WaitLimit);
        bool done = false;
        m_services->shutDown([&] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, WaitLimit);
        QCOMPARE(m_standIn->requests("/api/v1/logout").size(), 1);
    }

    void accountsAreTested()
    {
        start();
        m_services->setText(Item::SubtitleKey, SubtitleStandIn::ApiKey, [](const Result<void> &) {});
        Caught<ServiceAccounts::Connection> subtitles;
        m_services->testSubtitles(subtitles.completion());
        QVERIFY(!subtitles.value().isLoggedIn);
        Caught<void> films;
        m_services->testFilms(films.completion());
        QCOMPARE(kindOf(films.error()), ServiceFailure::KeyRefused);
    }

    void catalogueIsThePersonsOwnOnceThereIsOne()
    {
        start();
        QCOMPARE(m_services->catalogue().file, u"/shipped.sqlite"_s);
        QVERIFY(!m_services->catalogue().isOwn);
        const QString own = standardOwnCataloguePath();
        QVERIFY(QDir().mkpath(QFileInfo(own).path()));
        QFile file(own);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("12345") == 5);
        file.close();
        QCOMPARE(m_services->catalogue().file, own);
        QCOMPARE(m_services->catalogue().bytes, 5);
        QVERIFY(m_services->catalogue().isOwn);
        QVERIFY(file.remove());
    }

private:
    static const ServiceStatus::Value &status() { return ServiceStatus::shared().value(); }
    bool hasKey() const { return !m_services->restSettings().apiKey.isEmpty(); }

    void start() { start(m_secrets); }
    /// With a catalogue of so many rows.
    void start(const std::shared_ptr<SecretStore> &secrets, int rows = 0)
    {
        const auto catalogue = std::make_shared<ScriptedSubtitleService>();
        catalogue->answer = [rows](const QList<Arg> &) { return answerWith(rows); };
        const auto metadata = std::make_shared<ScriptedMetadataService>();
        metadata->answer = [](const QString &) { return FindResult(); };
        m_services = std::make_unique<ProgramServices>(
            ProgramServices::Parts{catalogue, u"catalogue"_s, metadata, secrets, u"/shipped.sqlite"_s});
    }

    static Result<QueryResult> search(const QString &language = u"eng"_s)
    {
        Caught<QueryResult> found;
        SubtitleService::shared().query({{Param::text, u"paper lighthouse"_s}, {Param::language, language}},
                                        [completion = found.completion()](const Result<QueryResult> &answer) {
                                            MainQueue::shared().async([=] { completion(answer); });
                                        });
        return *found;
    }

    Sandbox m_sandbox;
    std::unique_ptr<StandIn> m_standIn;
    std::shared_ptr<FileSecretStore> m_secrets;
    std::shared_ptr<FakeSecretStore> m_locked;
    std::unique_ptr<ProgramServices> m_services;
    int m_turn = 0;
};

PLOVENDIX_TEST(ProgramServicesTest)
#include "ProgramServicesTest.moc"
