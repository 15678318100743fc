#include "RestFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Whatever a server does, a search ends once, with rows or with a sentence.
class RestBadAnswersTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<RestFixture>(m_sandbox); }
    void cleanup() { m_fixture.reset(); }

    void harmlessOdditiesGiveRows_data()
    {
        QTest::addColumn<QString>("behaviour");
        for (const char *name : {"gzip", "gzip-unasked", "chunked", "as-text", "bad-utf8", "bom", "down-once",
                                 "close-once", "too-fast-once", "close-after"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void harmlessOdditiesGiveRows()
    {
        QFETCH(const QString, behaviour);
        m_fixture->standIn.select(behaviour);
        const auto caught = m_fixture->search();
        caught->value();
        QCOMPARE(caught->value().subtitles->size(), 3);
        QCOMPARE(m_fixture->standIn.complaints(), QStringList());
    }

    void badAnswersGiveTheirSentence_data()
    {
        QTest::addColumn<QString>("behaviour");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("tries");
        const auto row = [](const char *name, ServiceFailure kind, int tries) {
            QTest::newRow(name) << QString::fromLatin1(name) << static_cast<int>(kind) << tries;
        };
        row("redirect-loop", ServiceFailure::BadAnswer, 4);
        row("redirect-abroad", ServiceFailure::BadAnswer, 1);
        row("sign-in-page", ServiceFailure::BadAnswer, 1);
        row("sign-in-511", ServiceFailure::BadAnswer, 1);
        row("unknown-key", ServiceFailure::KeyRefused, 1);
        row("too-fast", ServiceFailure::TooManyRequests, 3);
        row("too-fast-silent", ServiceFailure::TooManyRequests, 3);
        row("too-fast-date", ServiceFailure::TooManyRequests, 3);
        row("too-fast-hour", ServiceFailure::TooManyRequests, 1);
        row("down", ServiceFailure::Unavailable, 3);
        row("broken", ServiceFailure::Unavailable, 2);
        row("gateway-page", ServiceFailure::Unavailable, 3);
        row("bad-request", ServiceFailure::Rejected, 1);
        row("html", ServiceFailure::BadAnswer, 1);
        row("array", ServiceFailure::BadAnswer, 1);
        row("null", ServiceFailure::BadAnswer, 1);
        row("empty", ServiceFailure::BadAnswer, 1);
        row("no-content", ServiceFailure::BadAnswer, 1);
        row("not-modified", ServiceFailure::BadAnswer, 1);
        row("cut", ServiceFailure::BadAnswer, 1);
        row("20-mib", ServiceFailure::BadAnswer, 1);
        row("gzip-bomb", ServiceFailure::BadAnswer, 1);
        row("length-too-long", ServiceFailure::Unavailable, 3);
        row("chunked-without-end", ServiceFailure::Unavailable, 3);
        row("unreadable-records", ServiceFailure::BadAnswer, 1);
    }
    void badAnswersGiveTheirSentence()
    {
        QFETCH(const QString, behaviour);
        QFETCH(const int, tries);
        m_fixture->clock.setLongestAutomaticWait(11s); // Retry-After of ten seconds is waited for as well
        m_fixture->standIn.select(behaviour);
        const auto caught = m_fixture->search();
        caught->error();
        QTEST(static_cast<int>(kindOf(*caught)), "kind");
        const base::Error error = caught->error();
        QVERIFY(!error.localizedDescription.isEmpty());
        QVERIFY(!error.localizedDescription.contains(u'<'));
        QVERIFY(!error.detail.contains(SubtitleStandIn::ApiKey));
        QCOMPARE(m_fixture->standIn.main().requests().size(), tries);
        QCOMPARE(m_fixture->standIn.foreign().requests().size(), 0);
    }

    /// Qt itself repeats a question on a connection that breaks, so the number of tries is open.
    void closingBeforeTheAnswerIsUnavailable()
    {
        m_fixture->standIn.select(u"close-before"_s);
        QCOMPARE(kindOf(*m_fixture->search()), ServiceFailure::Unavailable);
    }

    void badAnswersAreNotKept()
    {
        m_fixture->standIn.select(u"html"_s);
        m_fixture->search()->error();
        m_fixture->standIn.clearBehaviours();
        m_fixture->search()->value();
    }

    void silenceTimesOut()
    {
        m_fixture->standIn.select(u"silent"_s);
        const auto caught = m_fixture->search();
        for (int tries = 1; tries <= 3; ++tries) {
            QTRY_COMPARE_WITH_TIMEOUT(m_fixture->standIn.main().requests().size(), tries, WaitLimit);
            QTRY_COMPARE_WITH_TIMEOUT(m_fixture->clock.pending().value(0), Clock::Duration(20s), WaitLimit);
            m_fixture->clock.advance(20s);
        }
        QCOMPARE(kindOf(*caught), ServiceFailure::Timeout);
    }

    void clearTextIsForThisMachineOnly()
    {
        m_fixture->settings.base = QUrl(u"http://api.opensubtitles.com/api/v1"_s);
        m_fixture->restart();
        QCOMPARE(kindOf(*m_fixture->search()), ServiceFailure::ForbiddenAddress);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<RestFixture> m_fixture;
};

PLOVENDIX_TEST(RestBadAnswersTest)
#include "RestBadAnswersTest.moc"
