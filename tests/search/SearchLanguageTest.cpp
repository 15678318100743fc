#include "MainViewFixture.h"

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

    void storedLanguageIsConvertedAndReadAfresh();
    void languageWithoutEntryIsSearchedInEnglish();
    void languageChangeRepeatsTheFileSearchWithItsRequest();
    void languageChangeRepeatsTheTextSearchAndForgetsTheRequest();
    void languageChangeWithNothingToRepeatOnlyPrints();
    void languageChangeDeselectsTheRows();

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

void SearchLanguageTest::storedLanguageIsConvertedAndReadAfresh()
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

void SearchLanguageTest::languageWithoutEntryIsSearchedInEnglish()
{
    UserDefaults::standard().setObject(u"languageCode"_s, u"not a language"_s);
    m_view->controller->searchForFile(Video, std::nullopt);
    QCOMPARE(m_view->service->queries.last().last().value, u"eng"_s);
}

void SearchLanguageTest::languageChangeRepeatsTheFileSearchWithItsRequest()
{
    m_view->controller->searchForFile(Video, Tessaly);
    UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to de"_s});
    QCOMPARE(m_view->metadata->preferredLanguage, u"de"_s);
    QCOMPARE(m_view->service->queries.size(), 2);
    QVERIFY(m_view->service->queries.last().last() == (Arg{Param::language, u"ger"_s}));
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
}

void SearchLanguageTest::languageChangeRepeatsTheTextSearchAndForgetsTheRequest()
{
    m_view->field()->setText(u"typed"_s);
    m_view->controller->searchForText(u"typed"_s, Tessaly);
    UserDefaults::standard().setObject(u"languageCode"_s, u"ja"_s);
    QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"jpn"_s));
    QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
}

void SearchLanguageTest::languageChangeWithNothingToRepeatOnlyPrints()
{
    UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to fr"_s});
    QVERIFY(m_view->service->queries.isEmpty());
    QVERIFY(!m_view->controller->isSearching());
}

void SearchLanguageTest::languageChangeDeselectsTheRows()
{
    m_view->showResults(3);
    m_view->table()->selectRow(1);
    UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
    QCOMPARE(m_view->table()->numberOfSelectedRows(), 0);
}

QTEST_MAIN(SearchLanguageTest)
#include "SearchLanguageTest.moc"
