#include "MainViewFixture.h"

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QLabel>

using namespace Qt::StringLiterals;

class SearchLanguageTest final : public MainViewTest
{
    Q_OBJECT

private:
    QString noticeText() const
    {
        const auto *notice = m_view->child<ui::Label>("languageNotice");
        return notice->isVisible() ? notice->text() : QString();
    }

private Q_SLOTS:
    void storedLanguageIsConvertedAndReadAfresh()
    {
        const QMap<QString, QString> sent{{u"de"_s, u"ger"_s}, {u"pb"_s, u"pob"_s}, {u"qqq"_s, u"eng"_s}};
        for (const QString &code : sent.keys()) {
            setLanguage(code);
            m_view->search();
            QVERIFY(m_view->service->queries.last() == textArgs(u"anything"_s, sent[code]));
            m_view->searchFile();
            QCOMPARE(m_view->service->queries.last().last().value, sent[code]);
        }
        UserDefaults::standard().removeObject(u"languageCode"_s);
        m_view->search();
        QVERIFY(m_view->service->queries.last() == textArgs(u"anything"_s, u"eng"_s));
    }

    void changeRepeatsTheFileSearchWithItsRequest()
    {
        m_view->searchFile(tessaly());
        m_view->downloadButton()->setText(u"Another"_s); // a search that gets a request names it
        setLanguage(u"de"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to de"_s});
        QCOMPARE(m_view->metadata->preferredLanguage, u"de"_s);
        QCOMPARE(m_view->service->hashed, (QList<QUrl>{m_view->video, m_view->video}));
        QVERIFY(m_view->service->queries.last().last() == (Arg{Param::language, u"ger"_s}));
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void changeRepeatsTheTextSearchAndForgetsTheRequest()
    {
        m_view->controller->searchForText(u"another"_s, tessaly());
        m_view->field()->setText(u"typed"_s); // need not have been searched for
        setLanguage(u"ja"_s);
        QCOMPARE(m_view->service->queries.size(), 2);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"jpn"_s));
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
    }

    void changeWithNothingToRepeatOnlyPrintsAndDeselects()
    {
        m_view->showResults(3);
        m_view->table()->selectRow(1);
        m_sandbox.clearPrintedLines();
        setLanguage(u"fr"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to fr"_s});
        QCOMPARE(m_view->service->queries.size(), 1);
        QVERIFY(!m_view->controller->isSearching());
        QCOMPARE(m_view->table()->numberOfSelectedRows(), 0);
    }

    void removedLanguageIsTheRegisteredOneOrEnglish()
    {
        for (const QString &code : {u"en"_s, u"ja"_s}) {
            m_view.reset();
            UserDefaults::setStandardFile(m_sandbox.path(code + u".conf"_s));
            if (code != u"en"_s)
                UserDefaults::standard().registerDefaults({{u"languageCode"_s, code}});
            m_view = std::make_unique<MainViewFixture>();
            setLanguage(u"fr"_s);
            m_sandbox.clearPrintedLines();
            UserDefaults::standard().removeObject(u"languageCode"_s);
            QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to "_s + code});
            QCOMPARE(m_view->metadata->preferredLanguage, code);
        }
        m_view.reset();
        UserDefaults::setStandardFile(m_sandbox.path(u"others.conf"_s)); // with nothing registered
    }

    void observationIsQuietAtFirstAndEndsWithTheController()
    {
        setLanguage(u"fr"_s);
        m_view.reset();
        setLanguage(u"ja"_s);
        m_sandbox.clearPrintedLines();
        m_view = std::make_unique<MainViewFixture>();
        QVERIFY(m_sandbox.printedLines().filter(u"language code"_s).isEmpty());
        QVERIFY(!m_view->metadata->preferredLanguage); // told of changes only
        close();
        m_sandbox.clearPrintedLines();
        setLanguage(u"de"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void messageNamesTheLanguageThatWasSearched()
    {
        m_view->search(u"film"_s); // in English, for nothing is stored
        setLanguage(u"de"_s);
        m_view->answer(0);
        QCOMPARE(m_view->child<QLabel>("dropHeadline")->text(), u"Nothing found for “film” in English"_s);
        setLanguage(u"qqq"_s);
        m_view->searchFile();
        setLanguage(u"de"_s); // searches for the file again
        m_view->service->finish(m_view->service->queries.size() - 2, answerWith(1));
        m_view->turn();
        QCOMPARE(noticeText(), u"The services do not know the language “qqq”; English was searched"_s);
        m_view->answer(1);
        QCOMPARE(noticeText(), QString());
    }
};

PLOVENDIX_GUI_TEST(SearchLanguageTest)
#include "SearchLanguageTest.moc"
