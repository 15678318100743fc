#pragma once
#include <base/MainQueue.h>
#include <sources/films/FilmDatabase.h>
#include <tests/support/Sandbox.h>
#include <tests/support/standin/StandIn.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QDir>
#include <QTest>

/// The film database against its stand-in, on a clock that the test drives. Make one per test.
class FilmFixture final
{
public:
    static constexpr QSize PosterPoints{154, 154};

    explicit FilmFixture(const Sandbox &sandbox)
        : standIn({[this] { return qint64(clock.now().count()); }, [this] { return clock.date(); }}),
          m_folder(sandbox.path(QStringLiteral("films")))
    {
        QDir(m_folder).removeRecursively();
        settings.base = standIn.filmURL();
        settings.key = QString::fromLatin1(FilmStandIn::Token);
        restart();
    }
    ~FilmFixture()
    {
        films.reset();
        MainQueue::shared().clear();
    }

    QString folder() const { return m_folder; }

    /// As if the program had been started anew; what is on disk stays.
    void restart()
    {
        films.reset();
        films = std::make_unique<FilmDatabase>(clock, settings, m_folder, [this] { return ratio; });
        films->preferredLanguage = QStringLiteral("en");
    }

    std::shared_ptr<Caught<FindResult>> find(const QString &id)
    {
        auto caught = std::make_shared<Caught<FindResult>>();
        films->findExternally(id, ExternalSource::imdb, [caught](const Result<FindResult> &result) {
            QVERIFY(MainQueue::isMainThread());
            caught->completion()(result);
        });
        return caught;
    }

    std::shared_ptr<Caught<QImage>> image(const TmdbItem &item)
    {
        auto caught = std::make_shared<Caught<QImage>>();
        films->fetchImage(item, ImageKind::Poster, PosterPoints,
                          [caught](const Result<QImage> &result) { caught->completion()(result); });
        return caught;
    }

    /// The poster of a film that is found first.
    std::shared_ptr<Caught<QImage>> posterOf(const QString &id)
    {
        auto caught = std::make_shared<Caught<QImage>>();
        films->findExternally(id, ExternalSource::imdb, [this, caught](const Result<FindResult> &found) {
            QVERIFY2(found, found ? "" : qPrintable(found.error().detail));
            films->fetchImage(found->movieResults.value(0), ImageKind::Poster, PosterPoints,
                              [caught](const Result<QImage> &result) { caught->completion()(result); });
        });
        return caught;
    }

    void pass(std::chrono::seconds time) { clock.setDate(clock.date().addDuration(time)); }

    ManualClock clock;
    StandIn standIn;
    FilmSettings settings;
    qreal ratio = 1;
    std::unique_ptr<FilmDatabase> films;

private:
    QString m_folder;
};

template <class Value>
ServiceFailure kindIn(const Caught<Value> &caught)
{
    return kindOf((*caught).error()).value_or(static_cast<ServiceFailure>(0));
}
