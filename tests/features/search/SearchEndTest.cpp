#include "MainViewFixture.h"

#include <tests/support/TestMain.h>
#include <ui/views/Animator.h>

#include <QScrollBar>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace
{
/// Keeps the errors instead of showing an alert.
class ErrorKeepingController final : public MainViewController
{
public:
    QList<base::Error> errors;

    bool presentError(const base::Error &error) override
    {
        errors += error;
        return false;
    }
};
} // namespace

/// How searches end: by results, failures and the person, and the button that cancels and clears.
class SearchEndTest final : public MainViewTest
{
    Q_OBJECT

private:
    bool isButtonShown() const { return m_view->cancelButton()->isVisible(); }
    bool isFading() const
    {
        const auto widgets = m_view->window->findChildren<QWidget *>();
        return std::any_of(widgets.begin(), widgets.end(),
                           [](const QWidget *widget) { return widget->inherits("FadingSnapshot"); });
    }
    void addKindsOfSearch() const
    {
        QTest::addColumn<bool>("isForFile");
        QTest::newRow("file") << true;
        QTest::newRow("text") << false;
    }
    void beginSearch() const
    {
        QFETCH(bool, isForFile);
        if (isForFile)
            m_view->searchFile();
        else
            m_view->search();
    }

private Q_SLOTS:
    void resultsAreStoredBeforeTheMainQueueRuns()
    {
        m_view->search();
        m_view->service->finishLast(answerWith(3));
        QCOMPARE(m_view->table()->numberOfRows(), 0); // the table shows its last reload
        m_view->controller->updateUIState(false);
        QVERIFY(m_view->widget("scrollView")->isVisible()); // the list is there
        QVERIFY(m_view->controller->isSearching());
        m_view->turn();
        QCOMPARE(m_view->table()->numberOfRows(), 3);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(isButtonShown());
    }

    void emptyAndAbsentListsShowTheDropTarget()
    {
        for (const auto &nothing : {answerWith(0), Result<QueryResult>(QueryResult{})}) {
            m_view->showResults(3);
            m_view->search();
            m_view->answer(nothing);
            QCOMPARE(m_view->title(), u"Plovendix (0 subtitles found)"_s);
            QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
            QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
            QVERIFY(!m_view->widget("scrollView")->isVisible());
        }
        QCOMPARE(m_view->service->queries.size(), 4); // no further fallback
    }

    void textSearchScrollsToTheTop()
    {
        m_view->showResults(50);
        m_view->table()->scrollRowToVisible(40);
        QVERIFY(m_view->table()->verticalScrollBar()->value() > 0);
        m_view->showResults(50);
        QCOMPARE(m_view->table()->verticalScrollBar()->value(), 0);
    }

    void failureIsPrintedAndShownThenTheSearchEnds_data() { addKindsOfSearch(); }
    void failureIsPrintedAndShownThenTheSearchEnds()
    {
        beginSearch();
        m_view->service->finishLast(refusal());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: The service refuses."_s});
        bool wasSearching = false;
        bool couldBeCleared = true;
        QVERIFY(whileAlertIsUp([this] { m_view->turn(); },
                               [&] {
                                   wasSearching = m_view->controller->isSearching();
                                   couldBeCleared = isButtonShown();
                                   dismissAlert();
                               }));
        QVERIFY(wasSearching);
        QVERIFY(!couldBeCleared);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(isButtonShown());
        QCOMPARE(m_view->service->queries.size(), 1);
    }

    void failureIsPresentedAsAnErrorOfTheProgramsOwn()
    {
        const auto controller = ViewController::make<ErrorKeepingController>();
        m_view->window->setContentViewController(controller);
        controller->searchForText(u"a"_s, std::nullopt);
        m_view->answer(refusal());
        QCOMPARE(controller->errors.size(), 1);
        QCOMPARE(controller->errors.first().domain, QString());
        QCOMPARE(controller->errors.first().code, 123);
        QCOMPARE(controller->errors.first().localizedDescription, u"The service refuses."_s);
    }

    void alertHoldsBackTheNextBlocks()
    {
        m_view->search();
        m_view->search();
        m_view->service->finish(0, refusal());
        m_view->service->finish(1, answerWith(2));
        QString titleDuringAlert;
        QVERIFY(whileAlertIsUp([this] { m_view->turn(); },
                               [&] {
                                   m_view->turn();
                                   titleDuringAlert = m_view->title();
                                   dismissAlert();
                               }));
        QCOMPARE(titleDuringAlert, QString());
        QCOMPARE(m_view->title(), u"Plovendix (2 subtitles found)"_s);
    }

    void lastQueryToFinishWins()
    {
        m_view->search();
        m_view->search();
        QCOMPARE(m_view->service->cancellations, 0);
        m_view->service->finish(1, answerWith(2));
        m_view->turn();
        m_view->service->finish(0, answerWith(5));
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (5 subtitles found)"_s);
        QCOMPARE(m_view->table()->numberOfRows(), 5);
    }

    void nothingReachesAControllerThatIsGone()
    {
        m_view->search();
        const auto answer = m_view->service->takeCompletion(0);
        close(); // the reveal that waits does not keep it
        answer(answerWith(1));
        answer(refusal());
        m_view->advance(20s);
        QVERIFY(m_sandbox.printedLines().isEmpty());
    }

    void cancelButtonAppearsAfterTenSeconds_data() { addKindsOfSearch(); }
    void cancelButtonAppearsAfterTenSeconds()
    {
        beginSearch();
        m_view->advance(9999ms);
        QVERIFY(!isButtonShown());
        m_view->advance(1ms);
        QVERIFY(isButtonShown());
        QVERIFY(m_view->controller->isSearching());
    }

    void revealServesWhateverSearchRunsByThen()
    {
        m_view->search();
        m_view->controller->cancelQuery(nullptr);
        m_view->advance(20s);
        QVERIFY(!isButtonShown());
        m_view->search();
        m_view->advance(4s);
        m_view->controller->cancelQuery(nullptr);
        m_view->search();
        m_view->advance(5999ms);
        QVERIFY(!isButtonShown());
        m_view->advance(1ms); // ten seconds after the one began, six after the other
        QVERIFY(isButtonShown());
    }

    void buttonStaysAsItWasWhenAnotherSearchStarts()
    {
        m_view->showResults(2);
        m_view->search();
        QVERIFY(isButtonShown());
        m_view->controller->cancelQuery(nullptr);
        m_view->search();
        QVERIFY(!isButtonShown());
    }

    void buttonComesAndGoesAnimated()
    {
        Animator::setReducedMotion(false);
        m_view->showResults(0);
        QVERIFY(isButtonShown() && isFading());
        QTRY_VERIFY(!isFading());
        m_view->controller->cancelQuery(nullptr);
        QVERIFY(!isButtonShown() && isFading());
        QTRY_VERIFY(!isFading());
        m_view->search();
        m_view->advance(10s);
        QVERIFY(isButtonShown() && isFading());
    }

    void cancelDuringASearchKeepsTheText()
    {
        m_view->field()->setText(u"typed"_s);
        m_view->controller->doSearch(nullptr);
        m_view->advance(10s);
        QTest::mouseClick(m_view->cancelButton(), Qt::LeftButton);
        QCOMPARE(m_view->service->cancellations, 1);
        QCOMPARE(m_view->field()->text(), u"typed"_s);
        QVERIFY(m_view->field()->hasFocus());
        QCOMPARE(m_view->field()->selectedText(), u"typed"_s);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(!isButtonShown());
    }

    void cancelAfterASearchClearsFieldResultsTitleFileAndRequest()
    {
        m_view->searchFile(tessaly());
        m_view->answer(4);
        m_view->table()->setFocus();
        m_view->press(Qt::Key_Escape);
        QCOMPARE(m_view->field()->text(), QString());
        QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
        QCOMPARE(m_view->table()->numberOfRows(), 0);
        QCOMPARE(m_view->title(), u"Plovendix"_s);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QVERIFY(!isButtonShown());
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
        QVERIFY(m_view->field()->hasFocus());
        setLanguage(u"de"_s);
        QCOMPARE(m_view->service->queries.size(), 1); // neither file nor text to repeat
    }

    /// Nothing found by a file's hash leads to a search for words, but not once the person has cancelled.
    void answerThatWaitsIsDroppedByACancel()
    {
        for (const auto &outcome : {answerWith(0), Result<QueryResult>(refusal())}) {
            m_view->searchFile();
            m_view->service->finishLast(outcome);
            m_view->controller->cancelQuery(nullptr);
            QCOMPARE(alertDuring([this] { m_view->turn(); }), QString());
            QCOMPARE(m_view->title(), u"Plovendix"_s);
            QVERIFY(!m_view->controller->isQuerying());
            QVERIFY(!isButtonShown());
        }
        QCOMPARE(m_view->service->queries.size(), 2);
    }

    void cancelledAnswerLeavesTheNextSearchAlone()
    {
        m_view->search();
        m_view->service->finishLast(answerWith(2));
        m_view->controller->cancelQuery(nullptr);
        m_view->search();
        m_view->turn();
        QVERIFY(m_view->controller->isSearching());
        m_view->answer(3);
        QVERIFY(!m_view->controller->isSearching());
        QCOMPARE(m_view->table()->numberOfRows(), 3);
    }
};

PLOVENDIX_GUI_TEST(SearchEndTest)
#include "SearchEndTest.moc"
