#include "MainViewFixture.h"

#include <search/PendingRequest.h>

#include <QApplication>
#include <QLabel>
#include <QScrollBar>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>

#include <limits>
#include <thread>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);
const ExternalRequestInfo Tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};

Error refusal()
{
    return Error{u"Service"_s, 7, u"The service refuses."_s};
}
} // namespace

class SearchFlowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_sandbox.clearPrintedLines();
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void startsIdle();
    void fileSearchAsksForSizeHashAndLanguageInThatOrder();
    void sizeIsPrintedUnsignedWithoutSeparators();
    void fileSearchShowsTheNameAndKeepsFileAndRequest();
    void fileSearchWithoutRequestKeepsTheStoredOne();
    void textSearchAsksForTheTextAsTypedAndTheLanguage();
    void textSearchLeavesFieldAndFileAlone();
    void storedLanguageIsConvertedAndReadAfresh();
    void languageWithoutEntryIsSearchedInEnglish();
    void unhashableFileIsSearchedByItsFullName();
    void unhashableFileLeavesStateAndDropsItsRequest();
    void resultsAreStoredBeforeTheMainQueueRuns();
    void foundFilesShowTheCountAndTheList();
    void absentListCountsAsZero();
    void emptyFileSearchFallsBackToWordsOfTheName();
    void fallbackRunsWithTheFlagSetBack();
    void emptyTextSearchShowsTheDropTarget();
    void textSearchScrollsToTheTop();
    void failureIsPrintedAndShownThenTheSearchEnds();
    void completionAfterTheControllerHasGoneDoesNothing();
    void lastReferenceDroppedOnAWorkerIsHarmless();
    void lastQueryToFinishWins();
    void cancelButtonAppearsAfterTenSeconds();
    void cancelButtonStaysHiddenWhenNothingRunsByThen();
    void cancelButtonAppearsWhenTheSearchEnds();
    void searchButtonWithAnEmptyFieldDoesNothing();
    void returnWithAnEmptyFieldDoesNothing();
    void searchButtonForgetsFileAndRequest();
    void returnKeepsFileAndRequest();
    void cancelDuringASearchKeepsTheText();
    void cancelAfterASearchEmptiesTheField();
    void cancelClearsResultsTitleFileAndRequest();
    void returnLeavesTheSelectionWhereItWas();
    void downloadButtonNamesTheDelivery();
    void requesterNameIsNoMnemonic();
    void languageChangeRepeatsTheFileSearchWithItsRequest();
    void languageChangeRepeatsTheTextSearchAndForgetsTheRequest();
    void languageChangeWithNothingToRepeatOnlyPrints();
    void languageChangeDeselectsTheRows();
    void parkedRequestIsServedOnceWhenTheViewLoads();
    void fieldHasTheFocusWhenTheWindowAppears();
    void escapeCancels();
    void alertHoldsBackTheNextBlocks();

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

void SearchFlowTest::startsIdle()
{
    QVERIFY(!m_view->controller->isSearching());
    QVERIFY(!m_view->controller->isDownloading());
    QVERIFY(m_view->cancelButton()->isHidden());
    QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
    QVERIFY(!m_view->widget("scrollView")->isVisible());
    QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
    QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
}

void SearchFlowTest::fileSearchAsksForSizeHashAndLanguageInThatOrder()
{
    m_view->controller->searchForFile(Video, std::nullopt);
    const QList<Arg> expected = {{Param::byteSize, u"1234567"_s},
                                 {Param::movieHash, u"0123456789abcdef"_s},
                                 {Param::language, u"eng"_s}};
    QCOMPARE(m_view->service->queries.size(), 1);
    QVERIFY(m_view->service->queries.first() == expected);
    QCOMPARE(static_cast<int>(Param::byteSize), 2);
    QCOMPARE(static_cast<int>(Param::movieHash), 3);
    QCOMPARE(static_cast<int>(Param::text), 4);
    QCOMPARE(static_cast<int>(Param::language), 6);
}

void SearchFlowTest::sizeIsPrintedUnsignedWithoutSeparators()
{
    m_view->service->hash = VideoHash{u"ffffffffffffffff"_s, std::numeric_limits<quint64>::max()};
    m_view->controller->searchForFile(Video, std::nullopt);
    QCOMPARE(m_view->service->queries.first().first().value, u"18446744073709551615"_s);
}

void SearchFlowTest::fileSearchShowsTheNameAndKeepsFileAndRequest()
{
    QSignalSpy searching(m_view->controller.get(), &MainViewController::isSearchingChanged);
    m_view->controller->searchForFile(Video, Tessaly);
    QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
    QCOMPARE(searching.size(), 1);
    QVERIFY(m_view->controller->isSearching());
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
}

void SearchFlowTest::fileSearchWithoutRequestKeepsTheStoredOne()
{
    m_view->controller->searchForFile(Video, Tessaly);
    m_view->controller->searchForFile(Video, std::nullopt);
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
}

void SearchFlowTest::textSearchAsksForTheTextAsTypedAndTheLanguage()
{
    m_view->controller->searchForText(u"  two words "_s, std::nullopt);
    QVERIFY(m_view->service->queries.first() == textArgs(u"  two words "_s));
}

void SearchFlowTest::textSearchLeavesFieldAndFileAlone()
{
    m_view->controller->searchForFile(Video, std::nullopt);
    m_view->controller->searchForText(u"other"_s, std::nullopt);
    QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
    // The file is still the one that a language change repeats.
    UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
    QCOMPARE(m_view->service->queries.last().first().param, Param::byteSize);
}

void SearchFlowTest::storedLanguageIsConvertedAndReadAfresh()
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

void SearchFlowTest::languageWithoutEntryIsSearchedInEnglish()
{
    UserDefaults::standard().setObject(u"languageCode"_s, u"not a language"_s);
    m_view->controller->searchForFile(Video, std::nullopt);
    QCOMPARE(m_view->service->queries.last().last().value, u"eng"_s);
}

void SearchFlowTest::unhashableFileIsSearchedByItsFullName()
{
    m_view->service->hash.reset();
    m_view->controller->searchForFile(Video, std::nullopt);
    QVERIFY(m_view->service->queries.isEmpty()); // only on the next turn
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"Failed to create a file hash for the url"_s});
    m_view->turn();
    QVERIFY(m_view->service->queries.last() == textArgs(u"Some.Film.2019.mkv"_s));
    QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
}

void SearchFlowTest::unhashableFileLeavesStateAndDropsItsRequest()
{
    m_view->service->hash.reset();
    m_view->controller->searchForFile(Video, Tessaly);
    QVERIFY(!m_view->controller->isSearching());
    m_view->turn();
    QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
    // No file is kept either: a language change repeats the words.
    UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
    QVERIFY(m_view->service->queries.last() == textArgs(u"Some.Film.2019.mkv"_s, u"fre"_s));
}

void SearchFlowTest::resultsAreStoredBeforeTheMainQueueRuns()
{
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->service->finishLast(answerWith(3));
    QCOMPARE(m_view->controller->numberOfRowsInTableView(), 3);
    QCOMPARE(m_view->table()->numberOfRows(), 0); // the table shows its last reload
    QVERIFY(m_view->controller->isSearching());
    m_view->turn();
    QCOMPARE(m_view->table()->numberOfRows(), 3);
    QVERIFY(!m_view->controller->isSearching());
}

void SearchFlowTest::foundFilesShowTheCountAndTheList()
{
    m_view->controller->searchForFile(Video, std::nullopt);
    m_view->service->finishLast(answerWith(2));
    m_view->turn();
    QCOMPARE(m_view->title(), u"Plovendix (2 subtitles found)"_s);
    QVERIFY(m_view->widget("scrollView")->isVisible());
    QVERIFY(!m_view->widget("dragFilesHereView")->isVisible());
    QCOMPARE(m_view->service->queries.size(), 1);
}

void SearchFlowTest::absentListCountsAsZero()
{
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->service->finishLast(QueryResult{});
    m_view->turn();
    QCOMPARE(m_view->title(), u"Plovendix (0 subtitles found)"_s);
    QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
}

void SearchFlowTest::emptyFileSearchFallsBackToWordsOfTheName()
{
    m_view->controller->searchForFile(Video, std::nullopt);
    m_view->service->finishLast(answerWith(0));
    m_view->turn();
    QCOMPARE(m_view->field()->text(), u"words from name"_s);
    QCOMPARE(m_view->service->queries.size(), 2);
    QVERIFY(m_view->service->queries.last() == textArgs(u"words from name"_s));
    QCOMPARE(m_view->title(), u"Plovendix (0 subtitles found)"_s);
}

void SearchFlowTest::fallbackRunsWithTheFlagSetBack()
{
    m_view->controller->searchForFile(Video, std::nullopt);
    QSignalSpy changes(m_view->controller.get(), &MainViewController::isSearchingChanged);
    m_view->service->finishLast(answerWith(0));
    m_view->turn();
    QVERIFY(!m_view->controller->isSearching());
    QVERIFY(m_view->cancelButton()->isVisible());
    m_view->service->finishLast(answerWith(1));
    m_view->turn();
    QCOMPARE(m_view->title(), u"Plovendix (1 subtitles found)"_s);
}

void SearchFlowTest::emptyTextSearchShowsTheDropTarget()
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

void SearchFlowTest::textSearchScrollsToTheTop()
{
    m_view->showResults(50);
    m_view->table()->scrollRowToVisible(40);
    QVERIFY(m_view->table()->verticalScrollBar()->value() > 0);
    m_view->showResults(50);
    QCOMPARE(m_view->table()->verticalScrollBar()->value(), 0);
}

void SearchFlowTest::failureIsPrintedAndShownThenTheSearchEnds()
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

void SearchFlowTest::completionAfterTheControllerHasGoneDoesNothing()
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

void SearchFlowTest::lastReferenceDroppedOnAWorkerIsHarmless()
{
    QThread *destroyedOn = nullptr;
    connect(
        m_view->controller.get(), &QObject::destroyed, this, [&] { destroyedOn = QThread::currentThread(); },
        Qt::DirectConnection);
    m_view->window.reset();
    std::thread worker([last = std::move(m_view->controller)]() mutable { last.reset(); });
    worker.join();
    m_view->turn();
    QCOMPARE(destroyedOn, thread());
    m_view = std::make_unique<MainViewFixture>();
}

void SearchFlowTest::lastQueryToFinishWins()
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

void SearchFlowTest::cancelButtonAppearsAfterTenSeconds()
{
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->advance(9999ms);
    QVERIFY(m_view->cancelButton()->isHidden());
    m_view->advance(1ms);
    QVERIFY(m_view->cancelButton()->isVisible());
    QVERIFY(m_view->controller->isSearching());
}

void SearchFlowTest::cancelButtonStaysHiddenWhenNothingRunsByThen()
{
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->controller->cancelQuery(nullptr);
    QVERIFY(m_view->cancelButton()->isHidden());
    m_view->advance(20s);
    QVERIFY(m_view->cancelButton()->isHidden());
}

void SearchFlowTest::cancelButtonAppearsWhenTheSearchEnds()
{
    m_view->showResults(1);
    QVERIFY(m_view->cancelButton()->isVisible());
}

void SearchFlowTest::searchButtonWithAnEmptyFieldDoesNothing()
{
    m_view->controller->searchForFile(Video, Tessaly);
    m_view->field()->clear();
    QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
    QCOMPARE(m_view->service->queries.size(), 1);
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
}

void SearchFlowTest::returnWithAnEmptyFieldDoesNothing()
{
    m_view->field()->clear();
    m_view->press(Qt::Key_Return);
    QVERIFY(m_view->service->queries.isEmpty());
    QVERIFY(!m_view->controller->isSearching());
}

void SearchFlowTest::searchButtonForgetsFileAndRequest()
{
    m_view->controller->searchForFile(Video, Tessaly);
    m_view->field()->setText(u"typed"_s);
    QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
    QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
    QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
    UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
    QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"ger"_s));
}

void SearchFlowTest::returnKeepsFileAndRequest()
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

void SearchFlowTest::cancelDuringASearchKeepsTheText()
{
    m_view->field()->setText(u"typed"_s);
    m_view->controller->doSearch(nullptr);
    m_view->controller->cancelQuery(nullptr);
    QCOMPARE(m_view->field()->text(), u"typed"_s);
    QCOMPARE(m_view->service->cancellations, 1);
    QVERIFY(!m_view->controller->isSearching());
}

void SearchFlowTest::cancelAfterASearchEmptiesTheField()
{
    m_view->field()->setText(u"typed"_s);
    m_view->showResults(2);
    QTest::mouseClick(m_view->cancelButton(), Qt::LeftButton);
    QVERIFY(m_view->field()->text().isEmpty());
    QVERIFY(m_view->cancelButton()->isHidden());
}

void SearchFlowTest::cancelClearsResultsTitleFileAndRequest()
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

void SearchFlowTest::returnLeavesTheSelectionWhereItWas()
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

void SearchFlowTest::downloadButtonNamesTheDelivery()
{
    m_view->controller->searchForText(u"a"_s, Tessaly);
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    m_view->controller->cancelQuery(nullptr);
    QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
}

void SearchFlowTest::requesterNameIsNoMnemonic()
{
    m_view->controller->searchForText(u"a"_s, ExternalRequestInfo{u"x"_s, u"1"_s, u"A&B"_s});
    QCOMPARE(m_view->downloadButton()->text(), u"Send to A&&B"_s);
}

void SearchFlowTest::languageChangeRepeatsTheFileSearchWithItsRequest()
{
    m_view->controller->searchForFile(Video, Tessaly);
    UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to de"_s});
    QCOMPARE(m_view->metadata->preferredLanguage, u"de"_s);
    QCOMPARE(m_view->service->queries.size(), 2);
    QVERIFY(m_view->service->queries.last().last() == (Arg{Param::language, u"ger"_s}));
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
}

void SearchFlowTest::languageChangeRepeatsTheTextSearchAndForgetsTheRequest()
{
    m_view->field()->setText(u"typed"_s);
    m_view->controller->searchForText(u"typed"_s, Tessaly);
    UserDefaults::standard().setObject(u"languageCode"_s, u"ja"_s);
    QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"jpn"_s));
    QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
}

void SearchFlowTest::languageChangeWithNothingToRepeatOnlyPrints()
{
    UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"language code changed to fr"_s});
    QVERIFY(m_view->service->queries.isEmpty());
    QVERIFY(!m_view->controller->isSearching());
}

void SearchFlowTest::languageChangeDeselectsTheRows()
{
    m_view->showResults(3);
    m_view->table()->selectRow(1);
    UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
    QCOMPARE(m_view->table()->numberOfSelectedRows(), 0);
}

namespace
{
struct Parked final : PendingRequest
{
    std::optional<ExternalRequest> externalRequest() const override { return request; }
    void setExternalRequest(const std::optional<ExternalRequest> &value) override { request = value; }
    std::optional<ExternalRequest> request;
};
} // namespace

void SearchFlowTest::parkedRequestIsServedOnceWhenTheViewLoads()
{
    Parked parked;
    parked.request = ExternalRequest{Video, Tessaly};
    PendingRequest::setShared(&parked);
    m_view = std::make_unique<MainViewFixture>();
    PendingRequest::setShared(nullptr);
    QVERIFY(!parked.request);
    QCOMPARE(m_view->service->hashed, QList<QUrl>{Video});
    QCOMPARE(m_view->service->queries.size(), 1);
    QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
}

void SearchFlowTest::fieldHasTheFocusWhenTheWindowAppears()
{
    QTRY_VERIFY(m_view->field()->hasFocus());
}

void SearchFlowTest::escapeCancels()
{
    m_view->showResults(2);
    m_view->press(Qt::Key_Escape);
    QCOMPARE(m_view->title(), u"Plovendix"_s);
    QCOMPARE(m_view->table()->numberOfRows(), 0);
}

void SearchFlowTest::alertHoldsBackTheNextBlocks()
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

QTEST_MAIN(SearchFlowTest)
#include "SearchFlowTest.moc"
