#include "RestFixture.h"

#include <sources/online/RestLanguageList.h>
#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
QByteArray listOf(const QString &codes)
{
    QByteArrayList entries;
    for (const QString &code : codes.split(u' ', Qt::SkipEmptyParts))
        entries += R"({"language_code":")" + code.toUtf8() + "\"}";
    return R"({"data":[)" + entries.join(',') + "]}";
}

const QString Twenty = u"ar bg ca cs da de el en es et fi fr he hr hu it ja pt-PT ro zh-TW"_s;
constexpr ServiceFailure None = static_cast<ServiceFailure>(0);
const QByteArray Path = "/api/v1/infos/languages";
} // namespace

/// The service's own list of languages.
class RestLanguageListTest final : public QObject
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

    void withoutAListTheKnownOnesCount()
    {
        QCOMPARE(RestLanguageList().codeFor(u"abk"_s), u"ab"_s);
        QCOMPARE(RestLanguageList().codeFor(u"guj"_s), QString());
    }

    void listSaysWhatThereIs_data()
    {
        QTest::addColumn<QString>("threeLetters");
        QTest::addColumn<QString>("code");
        for (const auto &[three, code] : {std::pair(u"eng"_s, u"en"_s),
                                          {u"por"_s, u"pt-pt"_s},
                                          {u"zht"_s, u"zh-tw"_s},
                                          {u"abk"_s, QString()},
                                          {u"guj"_s, u"gu"_s},
                                          {u"deu"_s, u"de"_s},
                                          {QString(), QString()}})
            QTest::newRow(three.isEmpty() ? "(empty)" : qPrintable(three)) << three << code;
    }
    void listSaysWhatThereIs()
    {
        QFETCH(const QString, threeLetters);
        const auto list = RestLanguageList::read(listOf(Twenty + u" gu"_s));
        QVERIFY(list);
        QTEST(list->codeFor(threeLetters), "code");
    }

    void malformedListsAreRejected_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("page") << QByteArray("<html>");
        QTest::newRow("array") << QByteArray("[]");
        QTest::newRow("null") << QByteArray(R"({"data":null})");
        QTest::newRow("too few") << listOf(u"en de"_s);
        QTest::newRow("no codes") << listOf(u"1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22"_s);
        QTest::newRow("one repeated") << listOf(u"en "_s.repeated(50));
        QTest::newRow("far too many") << listOf(Twenty + u" xx"_s.repeated(2000));
    }
    void malformedListsAreRejected()
    {
        QFETCH(const QByteArray, body);
        QVERIFY(!RestLanguageList::read(body));
    }

    void codesThatAreNoneAreLeftOut()
    {
        const auto list = RestLanguageList::read(listOf(Twenty + u" en&x=1 ../.. "_s));
        QVERIFY(list);
        QVERIFY(*list == *RestLanguageList::read(listOf(Twenty)));
    }

    void listIsNotRequestedBeforeASearch()
    {
        const auto found = searchIn(u"eng"_s);
        QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
        QCOMPARE(timesAsked(), 0);
    }

    void firstSearchAsksAndLaterOnesGoByTheAnswer()
    {
        m_fixture->service->followLanguages();
        QCOMPARE(timesAsked(), 0);
        const auto first = searchIn(u"guj"_s); // not known here
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
        QCOMPARE(kindOf(*first), ServiceFailure::UnknownLanguage);
        QTRY_COMPARE_WITH_TIMEOUT(timesAsked(), 1, WaitLimit);
        QTRY_COMPARE_WITH_TIMEOUT(kindOfSearchIn(u"guj"_s), None, WaitLimit);
        const auto gone = searchIn(u"abk"_s);
        QTRY_VERIFY_WITH_TIMEOUT(gone->came(), WaitLimit);
        QCOMPARE(kindOf(*gone), ServiceFailure::UnknownLanguage);
        QCOMPARE(timesAsked(), 1);
    }

    void listIsKeptForAWeek()
    {
        m_fixture->service->followLanguages();
        const auto first = searchIn(u"eng"_s);
        QTRY_VERIFY_WITH_TIMEOUT(first->came(), WaitLimit);
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
            const auto found = searchIn(u"eng"_s);
            QTRY_VERIFY_WITH_TIMEOUT(found->came(), WaitLimit);
            QVERIFY(**found);
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

PLOVENDIX_TEST(RestLanguageListTest)
#include "RestLanguageListTest.moc"
