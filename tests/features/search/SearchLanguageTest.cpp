#include "MainViewFixture.h"

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>

#include <QLabel>

using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);
const ExternalRequestInfo Tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};
} // namespace

class SearchLanguageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void storedLanguageIsConvertedAndReadAfresh()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        QVERIFY(m_view->service->queries.last() == textArgs(u"a"_s, u"ger"_s));
        UserDefaults::standard().setObject(u"languageCode"_s, u"pb"_s);
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        QVERIFY(m_view->service->queries.last() == textArgs(u"a"_s, u"pob"_s));
        UserDefaults::standard().removeObject(u"languageCode"_s);
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        QVERIFY(m_view->service->queries.last() == textArgs(u"a"_s, u"eng"_s));
    }

    void languageWithoutEntryIsSearchedInEnglish()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"not a language"_s);
        m_view->controller->searchForFile(Video, std::nullopt);
        QCOMPARE(m_view->service->queries.last().last().value, u"eng"_s);
    }

    void languageChangeRepeatsTheFileSearchWithItsRequest()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to de"_s});
        QCOMPARE(m_view->metadata->preferredLanguage, u"de"_s);
        QCOMPARE(m_view->service->queries.size(), 2);
        QVERIFY(m_view->service->queries.last().last() == (Arg{Param::language, u"ger"_s}));
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void languageChangeGivesTheRequestToTheRepeatedSearch()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        m_view->downloadButton()->setText(u"Another"_s); // a search that gets a request names it
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(m_view->service->hashed, (QList<QUrl>{Video, Video}));
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void languageChangeRepeatsTheTextSearchAndForgetsTheRequest()
    {
        m_view->field()->setText(u"typed"_s);
        m_view->controller->searchForText(u"typed"_s, Tessaly);
        UserDefaults::standard().setObject(u"languageCode"_s, u"ja"_s);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"jpn"_s));
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
    }

    void languageChangeWithNothingToRepeatOnlyPrints()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to fr"_s});
        QVERIFY(m_view->service->queries.isEmpty());
        QVERIFY(!m_view->controller->isSearching());
    }

    void languageChangeDeselectsTheRows()
    {
        m_view->showResults(3);
        m_view->table()->selectRow(1);
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(m_view->table()->numberOfSelectedRows(), 0);
    }

    void textNeverSearchedForIsSearchedForOnALanguageChange()
    {
        m_view->field()->setText(u"only typed"_s);
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        QCOMPARE(m_view->service->queries.size(), 1);
        QVERIFY(m_view->service->queries.last() == textArgs(u"only typed"_s, u"fre"_s));
        QVERIFY(m_view->controller->isSearching());
    }

    void removedLanguageIsEnglish()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        m_view->field()->setText(u"typed"_s);
        m_sandbox.clearPrintedLines();
        UserDefaults::standard().removeObject(u"languageCode"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to en"_s});
        QCOMPARE(m_view->metadata->preferredLanguage, u"en"_s);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
    }

    void removedLanguageIsTheRegisteredOne()
    {
        m_view.reset();
        UserDefaults::setStandardFile(m_sandbox.path(u"registered.conf"_s));
        UserDefaults::standard().registerDefaults({{u"languageCode"_s, u"ja"_s}});
        m_view = std::make_unique<MainViewFixture>();
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        m_sandbox.clearPrintedLines();
        UserDefaults::standard().removeObject(u"languageCode"_s);
        const QStringList printed = m_sandbox.printedLines();
        const auto told = m_view->metadata->preferredLanguage;
        m_view.reset();
        UserDefaults::setStandardFile(m_sandbox.path(u"others.conf"_s)); // with nothing registered
        QCOMPARE(printed, QStringList{u"language code changed to ja"_s});
        QCOMPARE(told, u"ja"_s);
    }

    void observationIsQuietAtFirstAndEndsWithTheController()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        m_view.reset();
        UserDefaults::standard().setObject(u"languageCode"_s, u"ja"_s);
        m_sandbox.clearPrintedLines();
        m_view = std::make_unique<MainViewFixture>();
        QVERIFY(m_sandbox.printedLines().filter(u"language code"_s).isEmpty());
        QVERIFY(!m_view->metadata->preferredLanguage); // told of changes only

        m_view->window.reset();
        m_view->controller.reset();
        m_sandbox.clearPrintedLines();
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
        m_view = std::make_unique<MainViewFixture>();
    }

    void whatIsSaidIsOfTheLanguageThatWasSearched()
    {
        m_view->controller->searchForText(u"film"_s, std::nullopt); // in English, for nothing is stored
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        m_view->service->finish(0, answerWith(0));
        m_view->turn();
        QCOMPARE(m_view->child<QLabel>("dropHeadline")->text(), u"Nothing found for “film” in English"_s);
        QVERIFY(!m_view->child<QLabel>("dropHint")->text().contains(u"German"_s));

        UserDefaults::standard().setObject(u"languageCode"_s, u"qqq"_s);
        m_view->controller->searchForFile(Video, std::nullopt);
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s); // searches for the file again
        m_view->service->finish(m_view->service->queries.size() - 2, answerWith(1));
        m_view->turn();
        QVERIFY(m_view->child<ui::Label>("languageNotice")->text().contains(u"“qqq”"_s));
        m_view->service->finishLast(answerWith(1));
        m_view->turn();
        QVERIFY(!m_view->child<ui::Label>("languageNotice")->isVisible());
    }

    void resultsInEnglishForAnUnknownLanguageAreSaidToBe()
    {
        UserDefaults::standard().setObject(u"languageCode"_s, u"qqq"_s);
        m_view->showResults(2);
        const auto *notice = m_view->child<ui::Label>("languageNotice");
        QVERIFY(notice->isVisible());
        QCOMPARE(notice->text(), u"The services do not know the language “qqq”; English was searched"_s);
        m_view->controller->searchForText(u"another"_s, std::nullopt);
        QVERIFY(notice->isVisible()); // as long as the rows are those
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        m_view->showResults(2);
        QVERIFY(!notice->isVisible());
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(SearchLanguageTest)
#include "SearchLanguageTest.moc"
