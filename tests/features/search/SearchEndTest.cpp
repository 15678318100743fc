#include "MainViewFixture.h"

#include <tests/support/TestMain.h>

#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <QThread>
#include <QTimer>

#include <thread>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);
const ExternalRequestInfo Tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};

base::Error refusal()
{
    return base::Error{u"Service"_s, 7, u"The service refuses."_s};
}

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

class SearchEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void resultsAreStoredBeforeTheMainQueueRuns()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(answerWith(3));
        QCOMPARE(m_view->table()->numberOfRows(), 0); // the table shows its last reload
        m_view->controller->updateUIState(false);
        QVERIFY(m_view->widget("scrollView")->isVisible()); // the list is there
        QVERIFY(m_view->controller->isSearching());
        m_view->turn();
        QCOMPARE(m_view->table()->numberOfRows(), 3);
        QVERIFY(!m_view->controller->isSearching());
    }

    void absentListCountsAsZero()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(QueryResult{});
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (0 subtitles found)"_s);
        QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
    }

    void emptyTextSearchShowsTheDropTarget()
    {
        m_view->showResults(3);
        m_view->controller->searchForText(u"nobody's film"_s, std::nullopt);
        m_view->service->finishLast(answerWith(0));
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (0 subtitles found)"_s);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QVERIFY(!m_view->widget("scrollView")->isVisible());
        const auto *headline = m_view->child<QLabel>("dropHeadline");
        QCOMPARE(headline->text(), u"Nothing found for “nobody's film” in English"_s);
        QCOMPARE(m_view->service->queries.size(), 2);
    }

    void textSearchScrollsToTheTop()
    {
        m_view->showResults(50);
        m_view->table()->scrollRowToVisible(40);
        QVERIFY(m_view->table()->verticalScrollBar()->value() > 0);
        m_view->showResults(50);
        QCOMPARE(m_view->table()->verticalScrollBar()->value(), 0);
    }

    void failureIsPrintedAndShownThenTheSearchEnds()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(refusal());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: The service refuses."_s});
        QVERIFY(m_view->controller->isSearching());
        const QString shown = alertDuring([this] { m_view->turn(); });
        QCOMPARE(shown, u"The service refuses."_s);
        QVERIFY(!m_view->controller->isSearching());
        QVERIFY(m_view->cancelButton()->isVisible());
    }

    void failureIsPresentedAsAnErrorOfTheProgramsOwn()
    {
        const auto controller = ViewController::make<ErrorKeepingController>();
        m_view->window->setContentViewController(controller);
        controller->searchForText(u"a"_s, std::nullopt);
        m_view->service->finishLast(refusal());
        m_view->turn();
        QCOMPARE(controller->errors.size(), 1);
        QCOMPARE(controller->errors.first().domain, QString());
        QCOMPARE(controller->errors.first().code, 123);
        QCOMPARE(controller->errors.first().localizedDescription, u"The service refuses."_s);
    }

    void completionAfterTheControllerHasGoneDoesNothing()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        const auto answer = m_view->service->takeCompletion(0);
        m_view->window.reset();
        std::weak_ptr<MainViewController> gone = m_view->controller;
        m_view->controller.reset();
        QVERIFY(gone.expired());
        answer(answerWith(1));
        answer(refusal());
        m_view->turn();
        QVERIFY(m_sandbox.printedLines().isEmpty());
        m_view = std::make_unique<MainViewFixture>();
    }

    void lastReferenceDroppedOnAWorkerIsHarmless()
    {
        QThread *destroyedOn = nullptr;
        connect(
            m_view->controller.get(), &QObject::destroyed, this,
            [&] { destroyedOn = QThread::currentThread(); }, Qt::DirectConnection);
        m_view->window.reset();
        std::thread worker([last = std::move(m_view->controller)]() mutable { last.reset(); });
        worker.join();
        m_view->turn();
        QCOMPARE(destroyedOn, thread());
        m_view = std::make_unique<MainViewFixture>();
    }

    void lastQueryToFinishWins()
    {
        m_view->controller->searchForText(u"first"_s, std::nullopt);
        m_view->controller->searchForText(u"second"_s, std::nullopt);
        QCOMPARE(m_view->service->cancellations, 0);
        m_view->service->finish(1, answerWith(2));
        m_view->turn();
        m_view->service->finish(0, answerWith(5));
        m_view->turn();
        QCOMPARE(m_view->title(), u"Plovendix (5 subtitles found)"_s);
        QCOMPARE(m_view->table()->numberOfRows(), 5);
    }

    void alertHoldsBackTheNextBlocks()
    {
        m_view->controller->searchForText(u"first"_s, std::nullopt);
        m_view->controller->searchForText(u"second"_s, std::nullopt);
        m_view->service->finish(0, refusal());
        m_view->service->finish(1, answerWith(2));
        QString titleDuringAlert;
        QTimer look;
        connect(&look, &QTimer::timeout, this, [&] {
            if (QApplication::activeModalWidget())
                titleDuringAlert = m_view->title();
        });
        look.start(0);
        const QString shown = alertDuring([this] { m_view->turn(); });
        QCOMPARE(shown, u"The service refuses."_s);
        QVERIFY(!titleDuringAlert.contains(u"found"_s));
        QCOMPARE(m_view->title(), u"Plovendix (2 subtitles found)"_s);
    }

    void cancelButtonAppearsAfterTenSeconds()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->advance(9999ms);
        QVERIFY(m_view->cancelButton()->isHidden());
        m_view->advance(1ms);
        QVERIFY(m_view->cancelButton()->isVisible());
        QVERIFY(m_view->controller->isSearching());
    }

    void cancelButtonStaysHiddenWhenNothingRunsByThen()
    {
        m_view->controller->searchForText(u"a"_s, std::nullopt);
        m_view->controller->cancelQuery(nullptr);
        QVERIFY(m_view->cancelButton()->isHidden());
        m_view->advance(20s);
        QVERIFY(m_view->cancelButton()->isHidden());
    }

    void cancelButtonAppearsWhenTheSearchEnds()
    {
        m_view->showResults(1);
        QVERIFY(m_view->cancelButton()->isVisible());
    }

    void cancelDuringASearchKeepsTheText()
    {
        m_view->field()->setText(u"typed"_s);
        m_view->controller->doSearch(nullptr);
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(m_view->field()->text(), u"typed"_s);
        QCOMPARE(m_view->service->cancellations, 1);
        QVERIFY(!m_view->controller->isSearching());
    }

    void cancelAfterASearchEmptiesTheField()
    {
        m_view->field()->setText(u"typed"_s);
        m_view->showResults(2);
        QTest::mouseClick(m_view->cancelButton(), Qt::LeftButton);
        QVERIFY(m_view->field()->text().isEmpty());
        QVERIFY(m_view->cancelButton()->isHidden());
    }

    void cancelClearsResultsTitleFileAndRequest()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        m_view->service->finishLast(answerWith(4));
        m_view->turn();
        m_view->table()->setFocus();
        m_view->controller->cancelQuery(nullptr);
        QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
        QCOMPARE(m_view->table()->numberOfRows(), 0);
        QCOMPARE(m_view->title(), u"Plovendix"_s);
        QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
        QVERIFY(m_view->field()->hasFocus());
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(m_view->service->queries.size(), 1); // neither file nor text to repeat
    }

    void escapeCancels()
    {
        m_view->showResults(2);
        m_view->press(Qt::Key_Escape);
        QCOMPARE(m_view->title(), u"Plovendix"_s);
        QCOMPARE(m_view->table()->numberOfRows(), 0);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(SearchEndTest)
#include "SearchEndTest.moc"
