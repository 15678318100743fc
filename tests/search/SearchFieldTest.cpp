#include "MainViewFixture.h"

using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);
const ExternalRequestInfo Tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};
} // namespace

class SearchFieldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void textSearchAsksForTheTextAsTypedAndTheLanguage();
    void textSearchLeavesFieldAndFileAlone();
    void searchButtonWithAnEmptyFieldDoesNothing();
    void returnWithAnEmptyFieldDoesNothing();
    void searchButtonForgetsFileAndRequest();
    void returnKeepsFileAndRequest();
    void returnLeavesTheSelectionWhereItWas();
    void fieldHasTheFocusWhenTheWindowAppears();

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

void SearchFieldTest::textSearchAsksForTheTextAsTypedAndTheLanguage()
{
    m_view->controller->searchForText(u"  two words "_s, std::nullopt);
    QVERIFY(m_view->service->queries.first() == textArgs(u"  two words "_s));
}

void SearchFieldTest::textSearchLeavesFieldAndFileAlone()
{
    m_view->controller->searchForFile(Video, std::nullopt);
    m_view->controller->searchForText(u"other"_s, std::nullopt);
    QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
    // The file is still the one that a language change repeats.
    UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
    QCOMPARE(m_view->service->queries.last().first().param, Param::byteSize);
}

void SearchFieldTest::searchButtonWithAnEmptyFieldDoesNothing()
{
    m_view->controller->searchForFile(Video, Tessaly);
    m_view->field()->clear();
    QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
    QCOMPARE(m_view->service->queries.size(), 1);
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
}

void SearchFieldTest::returnWithAnEmptyFieldDoesNothing()
{
    m_view->field()->clear();
    m_view->press(Qt::Key_Return);
    QVERIFY(m_view->service->queries.isEmpty());
    QVERIFY(!m_view->controller->isSearching());
}

void SearchFieldTest::searchButtonForgetsFileAndRequest()
{
    m_view->controller->searchForFile(Video, Tessaly);
    m_view->field()->setText(u"typed"_s);
    QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
    QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
    QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
    UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
    QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"ger"_s));
}

void SearchFieldTest::returnKeepsFileAndRequest()
{
    m_view->controller->searchForFile(Video, Tessaly);
    m_view->field()->setText(u"typed"_s);
    m_view->field()->setFocus();
    m_view->press(Qt::Key_Return);
    QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
    QCOMPARE(m_view->service->queries.size(), 2);
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
    QCOMPARE(m_view->service->queries.last().first().param, Param::byteSize);
}

void SearchFieldTest::returnLeavesTheSelectionWhereItWas()
{
    m_view->field()->setText(u"some words"_s);
    m_view->field()->setFocus();
    QTRY_VERIFY(m_view->field()->hasFocus());
    m_view->field()->setSelection(5, 5);
    connect(m_view->field(), &QLineEdit::editingFinished, m_view->field(),
            [this] { m_view->field()->deselect(); });
    m_view->press(Qt::Key_Return);
    m_view->turn();
    QCOMPARE(m_view->field()->selectedText(), u"words"_s);
}

void SearchFieldTest::fieldHasTheFocusWhenTheWindowAppears()
{
    QTRY_VERIFY(m_view->field()->hasFocus());
}

QTEST_MAIN(SearchFieldTest)
#include "SearchFieldTest.moc"
