#pragma once
#include <base/MainQueue.h>
#include <sources/online/RestService.h>
#include <tests/support/Sandbox.h>
#include <tests/support/standin/StandIn.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QDir>
#include <QTest>

/// The subtitle service against its stand-in, on a clock that the test drives. Make one per test.
class RestFixture final
{
public:
    explicit RestFixture(const Sandbox &sandbox)
        : standIn({[this] { return qint64(clock.now().count()); }, [this] { return clock.date(); }}),
          names(std::make_shared<VideoNames>()),
          m_folder(sandbox.path(QStringLiteral("rest")))
    {
        QDir(m_folder).removeRecursively();
        settings.base = standIn.subtitleURL();
        settings.apiKey = SubtitleStandIn::ApiKey;
        restart();
    }
    ~RestFixture() { MainQueue::shared().clear(); }

    /// As if the program had been started anew; what is on disk stays.
    void restart()
    {
        service.reset();
        service = std::make_unique<RestService>(clock, settings, names, places());
    }
    void useAccount(const QString &user = SubtitleStandIn::UserName,
                    const QString &password = SubtitleStandIn::Password)
    {
        settings.userName = user;
        settings.password = password;
        service->setSettings(settings);
    }
    RestService::Places places() const
    {
        return {m_folder + QStringLiteral("/searches"), m_folder + QStringLiteral("/downloads")};
    }

    std::shared_ptr<Caught<QueryResult>> query(const QList<Arg> &args)
    {
        auto caught = std::make_shared<Caught<QueryResult>>();
        service->query(args, [caught](const Result<QueryResult> &result) { caught->completion()(result); });
        return caught;
    }
    std::shared_ptr<Caught<QueryResult>> search(const QString &text = QStringLiteral("paper lighthouse"))
    {
        return query({{Param::text, text}, {Param::language, QStringLiteral("eng")}});
    }
    std::shared_ptr<Caught<QUrl>> download(const SubtitlePtr &subtitle)
    {
        auto caught = std::make_shared<Caught<QUrl>>();
        service->download(subtitle, [caught](const Result<QUrl> &result) { caught->completion()(result); });
        return caught;
    }
    /// Whether it has come; while something else is on the wire time passes only by asking this.
    template <class Value>
    bool comesInTime(const Caught<Value> &caught)
    {
        if (!caught.came())
            clock.advance(std::chrono::milliseconds(100));
        return caught.came();
    }
    /// A result of the service that the settings name.
    SubtitlePtr subtitle(qint64 number = 9200001) const
    {
        auto made = std::make_shared<Subtitle>();
        made->service = RestPage::service();
        made->fileID = RestURL::fileId(settings.base, number);
        made->subFileName = QStringLiteral("Paper.Lighthouse.2019");
        made->subFormat = QStringLiteral("srt");
        made->subLanguageID = QStringLiteral("eng");
        return made;
    }

    ManualClock clock;
    StandIn standIn;
    std::shared_ptr<VideoNames> names;
    RestSettings settings;
    std::unique_ptr<RestService> service;

private:
    QString m_folder;
};

template <class Value>
ServiceFailure kindOf(const Caught<Value> &caught)
{
    return kindOf(caught.error()).value_or(static_cast<ServiceFailure>(0));
}
