#include <features/search/DropAreaMessage.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class DropAreaMessageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invitesWhenIdle()
    {
        QCOMPARE(dropPrompt().headline, u"Drop a video here"_s);
        QCOMPARE(dropPrompt().hint, u"or type a title above"_s);
    }

    void namesTheCompanions_data()
    {
        QTest::addColumn<QStringList>("companions");
        QTest::addColumn<QString>("hint");
        QTest::newRow("one") << QStringList{u"Glimmet"_s} << u"or type a title above\nWorks with Glimmet"_s;
        QTest::newRow("two") << QStringList{u"Tessaly"_s, u"Glimmet"_s}
                             << u"or type a title above\nWorks with Tessaly and Glimmet"_s;
        QTest::newRow("all") << QStringList{u"Tessaly"_s, u"Verbrook"_s, u"Glimmet"_s}
                             << u"or type a title above\nWorks with Tessaly, Verbrook and Glimmet"_s;
    }
    void namesTheCompanions()
    {
        QFETCH(QStringList, companions);
        QFETCH(QString, hint);
        QCOMPARE(dropPrompt(companions).hint, hint);
    }

    void saysWhatWasNotFoundAndInWhichLanguage_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("headline");
        QTest::newRow("German") << u"de"_s << u"ger"_s << u"Nothing found for “film” in German"_s;
        QTest::newRow("nothing stored") << QString() << u"eng"_s << u"Nothing found for “film” in English"_s;
        QTest::newRow("Brazilian") << u"pb"_s << u"pob"_s
                                   << u"Nothing found for “film” in Portuguese (Brazil)"_s;
    }
    void saysWhatWasNotFoundAndInWhichLanguage()
    {
        QFETCH(QString, code);
        QFETCH(QString, sent);
        QFETCH(QString, headline);
        const DropAreaMessage message = nothingFound(u"film"_s, {code, sent});
        QCOMPARE(message.headline, headline);
        QVERIFY(!message.hint.isEmpty());
    }

    void unknownLanguageIsSaid()
    {
        const DropAreaMessage message = nothingFound(u"film"_s, {u"qqq"_s, u"eng"_s});
        QCOMPARE(message.headline, u"Nothing found for “film” in English"_s);
        QCOMPARE(message.hint, u"The services do not know the language “qqq”; English was searched"_s);
        QVERIFY(languageNotice({u"de"_s, u"ger"_s}).isEmpty());
        QVERIFY(languageNotice({u"en"_s, u"eng"_s}).isEmpty());
    }

    void wordsSearchNamesTheWords()
    {
        QCOMPARE(wordsSearch(u"some film"_s).headline, u"Searching for “some film”…"_s);
        QVERIFY(wordsSearch(u"some film"_s).hint.contains(u"name"_s));
        QVERIFY(wordsSearch(QString(1000, u'x')).headline.size() < 120);
    }

    void offlineHintSaysWhereKeysAre()
    {
        QVERIFY(offlineHint().contains(u"offline catalogue"_s));
        QVERIFY(offlineHint().contains(u"Services"_s));
    }

    void longTextIsShortened()
    {
        const DropAreaMessage message = nothingFound(QString(1000, u'x'), {u"en"_s, u"eng"_s});
        QVERIFY(message.headline.size() < 120);
        QVERIFY(message.headline.contains(u"…"_s));
    }

    void textIsShortenedBetweenCharacters()
    {
        // Of two units each, so that one way or the other the limit falls within one.
        const QString clapper = QString::fromUcs4(U"\U0001F3AC").repeated(100);
        for (const QString &text : {clapper, u'x' + clapper}) {
            const QString headline = nothingFound(text, {u"en"_s, u"eng"_s}).headline;
            QCOMPARE(QString::fromUtf8(headline.toUtf8()), headline);
        }
    }

    void searchTextIsNeverAFormat()
    {
        const DropAreaMessage message = nothingFound(u"%2$@ %1$@"_s, {u"en"_s, u"eng"_s});
        QCOMPARE(message.headline, u"Nothing found for “%2$@ %1$@” in English"_s);
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(DropAreaMessageTest)
#include "DropAreaMessageTest.moc"
