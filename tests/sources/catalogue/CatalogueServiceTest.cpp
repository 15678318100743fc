#include "CatalogueClient.h"

#include <tests/support/TestMain.h>

#include <QFile>
#include <QTest>

/// What a query finds, and in which order.
class CatalogueServiceTest : public QObject
{
    Q_OBJECT

    Sandbox m_sandbox;
    CatalogueHome m_home{m_sandbox};

private Q_SLOTS:
    void init() { m_home.reset(); }

    void exactMatchesComeFirstThenDownloads()
    {
        QCOMPARE(ask(*m_home.service(), videoQuery(Hash, Size)),
                 QStringList({QStringLiteral("Lights.exact"), QStringLiteral("Lights.DVDRip"),
                              QStringLiteral("Lights.web"), QStringLiteral("Lights.1080p.BluRay")}));
    }

    void closerTitleComesFirst()
    {
        QCOMPARE(ask(*m_home.service(), textQuery(QStringLiteral("harbour lights"))).last(),
                 QStringLiteral("Revisited"));
        QCOMPARE(ask(*m_home.service(), textQuery(QStringLiteral("revisited harbour"))),
                 QStringList(QStringLiteral("Revisited")));
    }

    void resultsCarryWhatDeliveryAndListNeed()
    {
        const SubtitlePtr found =
            firstOf(*m_home.service(), textQuery(QStringLiteral("lights"), QStringLiteral("pt-BR")));
        QVERIFY(found);
        QCOMPARE(found->subFileName, QStringLiteral("Luzes"));
        QCOMPARE(found->subLanguageID, QStringLiteral("pob"));
        QCOMPARE(found->languageName, QStringLiteral("Portuguese (Brazil)"));
        QCOMPARE(found->service, CatalogueService::name());
        QVERIFY(!found->fileID.isEmpty());
    }

    void duplicatesAppearOnce()
    {
        CatalogueFixture own(m_sandbox, QStringLiteral("own.sqlite"));
        own.film({QStringLiteral("Twin Ferries")}, 2000)
            .subtitle(QStringLiteral("Ferries.A"), 5, "eng", "same")
            .subtitle(QStringLiteral("Ferries.B"), 50, "eng", "same")
            .subtitle(QStringLiteral("Ferries.C"), 2, "eng", "other")
            .subtitle(QStringLiteral("Ferries.D"), 1, "ger", "same");
        own.write();
        const QStringList expected = {QStringLiteral("Ferries.B"), QStringLiteral("Ferries.C")};
        QCOMPARE(ask(*m_home.service(), textQuery(QStringLiteral("twin ferries"))), expected);
        // The same file searched twice, as a catalogue and its copy.
        const auto doubled =
            m_home.service({{m_home.own(), Presence::Required}, {m_home.own(), Presence::Required}});
        QCOMPARE(ask(*doubled, textQuery(QStringLiteral("twin ferries"))), expected);
    }

    void ownCatalogueIsSeenOnceItExists()
    {
        const auto both = m_home.service();
        QCOMPARE(ask(*both, textQuery(QStringLiteral("tin orchard"))), QStringList());
        CatalogueFixture own(m_sandbox, QStringLiteral("own.sqlite"));
        own.film({QStringLiteral("The Tin Orchard")}, 2021).subtitle(QStringLiteral("Orchard"), 1).write();
        QCOMPARE(ask(*both, textQuery(QStringLiteral("tin orchard"))),
                 QStringList(QStringLiteral("Orchard")));
    }

    void rowsOfOneCatalogueCoverTheOthersFailure()
    {
        m_sandbox.writeFile(QStringLiteral("own.sqlite"), "no catalogue");
        QVERIFY(ask(*m_home.service(), textQuery(QStringLiteral("harbour lights")))
                    .contains(QStringLiteral("Lights.web")));
        QVERIFY(
            ask(*m_home.service(), textQuery(QStringLiteral("nothing here"))).first().contains(m_home.own()));
    }

    void missingStarterIsAnErrorOnce()
    {
        QVERIFY(QFile::remove(m_home.starter()));
        Answers answers;
        const auto lonely = m_home.service();
        lonely->query(textQuery(QStringLiteral("harbour lights")), answers.completion());
        QTRY_COMPARE(answers.count(), 1);
        QVERIFY(!answers.last());
        QCOMPARE(answers.last().error().domain, QStringLiteral("Catalogue"));
        QVERIFY(answers.last().error().localizedDescription.contains(m_home.starter()));
    }

    void oddArgumentsFindNothing_data()
    {
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("hash");
        QTest::newRow("size is no number") << "much" << Hash;
        QTest::newRow("negative size") << "-4096" << Hash;
        QTest::newRow("size beyond 64 bits") << "99999999999999999999999" << Hash;
        QTest::newRow("short hash") << "4096" << Hash.left(15);
        QTest::newRow("hash with other letters") << "4096" << QStringLiteral("0011223344556gff");
        QTest::newRow("empty") << ""
                               << "";
    }

    void oddArgumentsFindNothing()
    {
        QFETCH(QString, size);
        QFETCH(QString, hash);
        const QList<Arg> args = {
            {Param::byteSize, size}, {Param::movieHash, hash}, {Param::language, QStringLiteral("eng")}};
        QCOMPARE(ask(*m_home.service(), args), QStringList());
    }

    void unknownLanguageIsNotSearchedInAnother()
    {
        QCOMPARE(ask(*m_home.service(), textQuery(QStringLiteral("harbour lights"), QStringLiteral("qqq"))),
                 QStringList());
        QCOMPARE(ask(*m_home.service(), textQuery(QStringLiteral("harbour lights"), QStringLiteral("?"))),
                 QStringList());
    }
};

PLOVENDIX_TEST(CatalogueServiceTest)
#include "CatalogueServiceTest.moc"
