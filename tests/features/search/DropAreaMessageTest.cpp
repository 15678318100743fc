#include <features/search/DropAreaMessage.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>

#include <QTest>

using namespace Qt::StringLiterals;

class DropAreaMessageTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void promptNamesTheCompanions_data()
    {
        QTest::addColumn<QStringList>("companions");
        QTest::addColumn<QString>("hint");
        QTest::newRow("none") << QStringList() << u"or type a title above"_s;
        QTest::newRow("one") << QStringList{u"Glimmet"_s} << u"or type a title above\nWorks with Glimmet"_s;
        QTest::newRow("two") << QStringList{u"Tessaly"_s, u"Glimmet"_s}
                             << u"or type a title above\nWorks with Tessaly and Glimmet"_s;
        QTest::newRow("all") << QStringList{u"Tessaly"_s, u"Verbrook"_s, u"Glimmet"_s}
                             << u"or type a title above\nWorks with Tessaly, Verbrook and Glimmet"_s;
    }
    void promptNamesTheCompanions()
    {
        QFETCH(QStringList, companions);
        QFETCH(QString, hint);
        QCOMPARE(dropPrompt(companions).headline, u"Drop a video here"_s);
        QCOMPARE(dropPrompt(companions).hint, hint);
    }

    void nothingFoundNamesTextAndLanguage_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("sent");
        QTest::addColumn<QString>("headline");
        QTest::addColumn<QString>("hint");
        const QString advice = u"Try fewer words or another language"_s;
        const auto row = [&](const char *name, const QString &text, const QString &code, const QString &sent,
                             const QString &headline, const QString &hint) {
            QTest::newRow(name) << text << code << sent << headline << hint;
        };
        row("German", u"film"_s, u"de"_s, u"ger"_s, u"Nothing found for “film” in German"_s, advice);
        row("English", u"film"_s, u"en"_s, u"eng"_s, u"Nothing found for “film” in English"_s, advice);
        row("nothing stored", u"film"_s, {}, u"eng"_s, u"Nothing found for “film” in English"_s, advice);
        row("Brazilian", u"film"_s, u"pb"_s, u"pob"_s, u"Nothing found for “film” in Portuguese (Brazil)"_s,
            advice);
        row("unknown", u"film"_s, u"qqq"_s, u"eng"_s, u"Nothing found for “film” in English"_s,
            u"The services do not know the language “qqq”; English was searched"_s);
        row("text like a format", u"%2$@ %1$@"_s, u"en"_s, u"eng"_s,
            u"Nothing found for “%2$@ %1$@” in English"_s, advice);
        row("long text", QString(1000, u'x'), u"en"_s, u"eng"_s,
            u"Nothing found for “"_s + QString(59, u'x') + u"…” in English"_s, advice);
    }
    void nothingFoundNamesTextAndLanguage()
    {
        QFETCH(QString, text);
        QFETCH(QString, code);
        QFETCH(QString, sent);
        const DropAreaMessage message = nothingFound(text, {code, sent});
        QTEST(message.headline, "headline");
        QTEST(message.hint, "hint");
        QCOMPARE(languageNotice({code, sent}).isEmpty(), code != u"qqq"_s);
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

private:
    Sandbox m_sandbox;
};

PLOVENDIX_TEST(DropAreaMessageTest)
#include "DropAreaMessageTest.moc"
