#include <net/ServiceError.h>
#include <sources/online/RestQuery.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QString nameOf(const VideoHash &video)
{
    return video == VideoHash{u"8e245d9679d31e12"_s, 12909756} ? u"Paper.Lighthouse.2019.1080p.WEB-ABC.mkv"_s
                                                               : QString();
}

Result<RestURL::Parameters> query(const QList<Arg> &args, bool machine = false)
{
    return queryParameters(args, nameOf, machine);
}
} // namespace

class RestQueryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hashGoesWithTheRememberedName()
    {
        const auto made = query({{Param::byteSize, u"12909756"_s},
                                 {Param::movieHash, u"8E245D9679D31E12"_s},
                                 {Param::language, u"eng"_s}});
        QVERIFY(made);
        QCOMPARE(RestURL::query(*made),
                 "languages=en&moviehash=8e245d9679d31e12&query=paper.lighthouse.2019.1080p.web-abc.mkv");
    }

    void hashOfAnotherSizeHasNoName()
    {
        const auto made = query({{Param::byteSize, u"1"_s},
                                 {Param::movieHash, u"8e245d9679d31e12"_s},
                                 {Param::language, u"pob"_s}});
        QCOMPARE(RestURL::query(*made), "languages=pt-br&moviehash=8e245d9679d31e12");
    }

    void namesTooShortToAskForAreLeftOut()
    {
        for (const auto &[name, sent] : {std::pair(u"Up"_s, false), {u"Up!"_s, true}}) {
            const auto made = queryParameters(
                {{Param::movieHash, u"8e245d9679d31e12"_s}}, [&](const VideoHash &) { return name; }, false);
            QCOMPARE(made->contains(u"query"_s), sent);
        }
    }

    void wordsAreSentAsWords_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("sent");
        const auto row = [](const char *sent, const QString &text) {
            QTest::newRow(sent) << text << QByteArray(sent);
        };
        row("languages=en&query=paper+lighthouse", u" Paper  Lighthouse "_s);
        row("languages=en&query=paper+lighthouse+2019", u"paper lighthouse 2019"_s);
        row("episode_number=2&languages=en&query=paper+lighthouse&season_number=1",
            u"Paper Lighthouse S01E02"_s);
        row("episode_number=0&languages=en&query=paper+lighthouse&season_number=0",
            u"Paper Lighthouse S00E00"_s);
        row("episode_number=2&languages=en&query=doctor+who+2005&season_number=1",
            u"Doctor Who 2005 S01E02"_s);
        row("episode_number=2&languages=en&query=doctor+who+2005&season_number=1",
            u"Doctor Who (2005) S01E02"_s);
        row("episode_number=6&languages=en&query=s.h.i.e.l.d.&season_number=2", u"S.H.I.E.L.D. S02E06"_s);
        row("episode_number=6&languages=en&query=agents+of+s.h.i.e.l.d.&season_number=2",
            u"Agents.of.S.H.I.E.L.D.S02E06"_s);
        row("episode_number=6&languages=en&query=agents+of+s.h.i.e.l.d.&season_number=2",
            u"Agents of S H I E L D S02E06"_s);
        row("episode_number=1&languages=en&query=l.a.+law&season_number=1", u"L.A. Law S01E01"_s);
        row("languages=en&query=24", u"24"_s);
        row("languages=en&query=1917", u"1917"_s);
        row("languages=en&query=s01e02", u"S01E02"_s);
    }
    void wordsAreSentAsWords()
    {
        QFETCH(const QString, text);
        const auto made = query({{Param::text, text}, {Param::language, u"eng"_s}});
        QVERIFY(made);
        QTEST(RestURL::query(*made), "sent");
    }

    void languagesAreSortedAndSingle()
    {
        const auto made = query({{Param::text, u"x"_s},
                                 {Param::language, u"pob"_s},
                                 {Param::language, u"eng"_s},
                                 {Param::language, u"ENG"_s}});
        QCOMPARE(RestURL::query(*made), "languages=en%2Cpt-br&query=x");
        QCOMPARE(RestURL::query(*query({{Param::text, u"x"_s}})), "query=x");
    }

    void machineTranslationsAreAskedForWhenWanted()
    {
        const QList<Arg> args{{Param::text, u"x"_s}};
        QCOMPARE(RestURL::query(*query(args, true)), "machine_translated=include&query=x");
    }

    void whatCannotBeAskedIsAnError_data()
    {
        QTest::addColumn<QList<Arg>>("args");
        QTest::addColumn<int>("kind");
        const auto row = [](const char *name, const QList<Arg> &args, ServiceFailure kind) {
            QTest::newRow(name) << args << static_cast<int>(kind);
        };
        row("no words", {{Param::text, u"  \t"_s}, {Param::language, u"eng"_s}},
            ServiceFailure::NothingToAsk);
        row("nothing", {}, ServiceFailure::NothingToAsk);
        row("unknown language", {{Param::text, u"x"_s}, {Param::language, u"mlt"_s}},
            ServiceFailure::UnknownLanguage);
        row("short hash", {{Param::movieHash, u"8e245d"_s}}, ServiceFailure::Rejected);
        row("no hash at all", {{Param::movieHash, u"8e245d9679d31e1g"_s}}, ServiceFailure::Rejected);
        row("hash and a line", {{Param::movieHash, u"8e245d9679d31e12\n"_s}}, ServiceFailure::Rejected);
    }
    void whatCannotBeAskedIsAnError()
    {
        QFETCH(const QList<Arg>, args);
        const auto made = query(args);
        QVERIFY(!made);
        QTEST(static_cast<int>(kindOf(made.error()).value()), "kind");
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(RestQueryTest)
#include "RestQueryTest.moc"
