#include "RestFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr ServiceFailure None = static_cast<ServiceFailure>(0);
const QByteArray Path = "/api/v1/infos/languages";
} // namespace

/// The service's own list of languages.
class RestLanguageKeeperTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;

    std::shared_ptr<Caught<QueryResult>> searchIn(const QString &language) const
    {
        return m_fixture->query({{Param::text, u"paper lighthouse"_s}, {Param::language, language}});
    }
    qsizetype timesAsked() const { return m_fixture->standIn.requests(Path).size(); }

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup()
    {
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
        m_fixture.reset();
    }

    void listIsNotRequestedBeforeASearch()
    {
        searchIn(u"eng"_s)->value();
        QCOMPARE(timesAsked(), 0);
    }

    void firstSearchAsksAndLaterOnesGoByTheAnswer()
    {
        m_fixture->service->followLanguages();
        QCOMPARE(timesAsked(), 0);
        const auto first = searchIn(u"guj"_s); // not known here
        QCOMPARE(kindOf(*first), ServiceFailure::UnknownLanguage);
        QTRY_COMPARE_WITH_TIMEOUT(timesAsked(), 1, WaitLimit);
        QTRY_COMPARE_WITH_TIMEOUT(kindOfSearchIn(u"guj"_s), None, WaitLimit);
        QCOMPARE(kindOf(*searchIn(u"abk"_s)), ServiceFailure::UnknownLanguage);
        QCOMPARE(timesAsked(), 1);
    }

    void listIsKeptForAWeek()
    {
        m_fixture->service->followLanguages();
        searchIn(u"eng"_s)->value();
        QTRY_COMPARE_WITH_TIMEOUT(timesAsked(), 1, WaitLimit);
        QTRY_COMPARE_WITH_TIMEOUT(kindOfSearchIn(u"abk"_s), ServiceFailure::UnknownLanguage, WaitLimit);

        m_fixture->restart();
        m_fixture->service->followLanguages();
        QTRY_COMPARE_WITH_TIMEOUT(kindOfSearchIn(u"abk"_s), ServiceFailure::UnknownLanguage, WaitLimit);
        QCOMPARE(timesAsked(), 1);

        m_fixture->clock.setDate(m_fixture->clock.date().addDays(8));
        m_fixture->restart();
        m_fixture->service->followLanguages();
        // Old as it is, it counts until there is another.
        QTRY_COMPARE_WITH_TIMEOUT(kindOfSearchIn(u"abk"_s), ServiceFailure::UnknownLanguage, WaitLimit);
        QTRY_COMPARE_WITH_TIMEOUT(timesAsked(), 2, WaitLimit);
    }

    void failureIsNoNewsAndNotRepeated()
    {
        m_fixture->standIn.select(u"html@languages"_s);
        m_fixture->service->followLanguages();
        for (int time = 0; time < 2; ++time) {
            searchIn(u"eng"_s)->value();
            QTRY_COMPARE_WITH_TIMEOUT(timesAsked(), 1, WaitLimit);
        }
        QCOMPARE(kindOfSearchIn(u"abk"_s), None);
    }

    void endInTheMiddleIsHarmless()
    {
        m_fixture->service->followLanguages();
        searchIn(u"eng"_s);
        m_fixture->service.reset();
        QCOMPARE(timesAsked(), 0);
    }

private:
    /// The kind of failure of a search, 0 for none.
    ServiceFailure kindOfSearchIn(const QString &language) const
    {
        const auto found = searchIn(language);
        if (!QTest::qWaitFor([&] { return found->came(); }, WaitLimit))
            return ServiceFailure::Timeout;
        return **found ? None : kindOf(*found);
    }
};

PLOVENDIX_TEST(RestLanguageKeeperTest)
#include "RestLanguageKeeperTest.moc"
