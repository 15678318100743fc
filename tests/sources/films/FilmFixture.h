#pragma once
#include <base/MainQueue.h>
#include <sources/films/FilmDatabase.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/standin/StandIn.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QDir>

/// The base of tests of the film database against its stand-in, on a clock that the test drives.
class FilmFixture : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        clock = std::make_unique<ManualClock>();
        standIn = std::make_unique<StandIn>(
            StandInTime{[this] { return qint64(clock->now().count()); }, [this] { return clock->date(); }});
        QDir(folder).removeRecursively();
        ratio = 1;
        settings = {standIn->filmURL(), QString::fromLatin1(FilmStandIn::Token)};
        restart();
    }
    void cleanup()
    {
        films.reset();
        MainQueue::shared().clear();
        QCOMPARE(standIn->complaints(), QStringList());
        standIn.reset();
    }

protected:
    using Found = std::shared_ptr<Caught<FindResult>>;
    using Shown = std::shared_ptr<Caught<QImage>>;

    static inline const QString Film = QStringLiteral("tt9000002");
    static inline const QString Episode = QStringLiteral("tt9000011"); // its show is asked for next
    static constexpr QSize PosterPoints{154, 154};

    /// As if the program had been started anew; what is on disk stays.
    void restart()
    {
        films.reset();
        films = std::make_unique<FilmDatabase>(*clock, settings, folder, [this] { return ratio; });
        films->preferredLanguage = QStringLiteral("en");
    }

    Found find(const QString &id = Film)
    {
        auto caught = std::make_shared<Caught<FindResult>>();
        films->findExternally(id, ExternalSource::imdb, [caught](const Result<FindResult> &result) {
            QVERIFY(MainQueue::isMainThread());
            caught->completion()(result);
        });
        return caught;
    }

    Shown image(const TmdbItem &item)
    {
        auto caught = std::make_shared<Caught<QImage>>();
        films->fetchImage(item, ImageKind::Poster, PosterPoints,
                          [caught](const Result<QImage> &result) { caught->completion()(result); });
        return caught;
    }
    Shown imageAt(const char *path)
    {
        return image({QVariantMap{{QStringLiteral("poster"), QString::fromLatin1(path)}}});
    }
    /// The poster of a film, which is found first.
    Shown posterOf(const QString &id = Film) { return image(find(id)->value().movieResults.value(0)); }

    void pass(std::chrono::seconds time) { clock->setDate(clock->date().addDuration(time)); }
    QList<ReceivedRequest> requests() const { return standIn->main().requests(); }
    QList<ReceivedRequest> imageRequests() const { return standIn->images().requests(); }

    template <class Value>
    static ServiceFailure kindIn(const Caught<Value> &caught)
    {
        return kindOf(caught.error()).value_or(static_cast<ServiceFailure>(0));
    }

    const Sandbox sandbox;
    const QString folder = sandbox.path(QStringLiteral("films"));
    std::unique_ptr<ManualClock> clock;
    std::unique_ptr<StandIn> standIn;
    FilmSettings settings;
    qreal ratio = 1;
    std::unique_ptr<FilmDatabase> films;
};
