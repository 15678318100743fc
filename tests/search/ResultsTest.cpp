#include "MainViewFixture.h"

#include <platform/Animator.h>
#include <platform/BottomPanelView.h>
#include <platform/ImageView.h>
#include <platform/Label.h>
#include <platform/LayoutConstraint.h>
#include <search/ScrollView.h>
#include <search/SubtitleCellView.h>

#include <QAccessible>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace
{
Error refusal()
{
    return Error{u"Metadata"_s, 3, u"The film database refuses."_s};
}

FindResult found(int movies, int shows)
{
    FindResult result;
    for (int number = 0; number < movies; ++number)
        result.movieResults += TmdbItem{u"movie %1"_s.arg(number)};
    for (int number = 0; number < shows; ++number)
        result.tvResults += TmdbItem{u"show %1"_s.arg(number)};
    return result;
}

QImage picture(const QColor &color)
{
    QImage image(20, 30, QImage::Format_RGB32);
    image.fill(color);
    return image;
}
} // namespace

class ResultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void absentAndEmptyListsHaveNoRows();
    void cellShowsNameDetailsAndIcon();
    void unknownFormatShowsTheUnknownIcon();
    void formatIsNoPath();
    void rowsAreReadByTheirNames();
    void selectionFillsAndShowsThePanel();
    void selectionWithThePanelShownDoesNotMoveIt();
    void deselectionHidesThePanel();
    void panelStartsHiddenWithInsets();
    void insetsChangeBeforeThePanelMoves();
    void shownPanelScrollsToTheSelectedRowWhenAnimated();
    void shownPanelDoesNotScrollWithoutAnimation();
    void posterIsAskedForByImdbId();
    void subtitleWithoutImdbIdHasNoPoster();
    void movieComesBeforeShow();
    void showServesWhereNoMovieIs();
    void nothingFoundLeavesThePosterEmpty();
    void findFailureIsOnlyPrinted();
    void fetchFailureIsOnlyPrinted();
    void lateLookupShowsItsPosterAllTheSame();
    void posterIsClearedWhenThePanelIsFilled();
    void posterFillsItsPlaceWithRoundedCorners();
    void posterForAControllerThatIsGone();
    void emptyResultsDropTheSelection();
    void reloadKeepsTheSelectedRow();
    void storedListDoesNotChangeTheRowsShown();
    void hundredThousandRowsAreShown();

private:
    ImageView *poster() const { return m_view->child<ImageView>("detailViewImageView"); }
    ScrollView *scrollView() const { return m_view->child<ScrollView>("scrollView"); }
    LayoutConstraint *constraint() const
    {
        return static_cast<BottomPanelView *>(m_view->controller->view())->bottomConstraint();
    }
    QString label(const char *name) const { return m_view->child<Label>(name)->text(); }
    void select(int row) const { m_view->table()->selectRow(row); }

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

void ResultsTest::absentAndEmptyListsHaveNoRows()
{
    QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
    m_view->showResults(0);
    QCOMPARE(m_view->controller->numberOfRowsInTableView(), 0);
    QVERIFY(m_view->widget("dragFilesHereView")->isVisible());
}

void ResultsTest::cellShowsNameDetailsAndIcon()
{
    m_view->showResults(2);
    auto *cell = qobject_cast<SubtitleCellView *>(m_view->controller->tableViewViewForRow(1));
    QVERIFY(cell);
    QCOMPARE(cell->titleTextField->text(), u"Film.2"_s);
    QCOMPARE(cell->subtitleTextField->text(), u"Film"_s);
    QVERIFY(cell->imageView()->image());
    QVERIFY(*cell->imageView()->image() == *Image::named(u"SRT"_s));
    QCOMPARE(cell->imageView()->image()->size(), QSizeF(64, 64));
}

void ResultsTest::unknownFormatShowsTheUnknownIcon()
{
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->service->finishLast(answerWith(someSubtitles(1, u"odd"_s)));
    m_view->turn();
    TableCellView *cell = m_view->controller->tableViewViewForRow(0);
    QVERIFY(*cell->imageView()->image() == *Image::named(u"UNKNOWN"_s));
    QCOMPARE(cell->imageView()->image()->size(), QSizeF(64, 64));
}

void ResultsTest::formatIsNoPath()
{
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->service->finishLast(answerWith(someSubtitles(1, u"../icons/srt"_s)));
    m_view->turn();
    TableCellView *cell = m_view->controller->tableViewViewForRow(0);
    QVERIFY(*cell->imageView()->image() == *Image::named(u"UNKNOWN"_s));
}

void ResultsTest::rowsAreReadByTheirNames()
{
    m_view->showResults(2);
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(m_view->table());
    QCOMPARE(list->text(QAccessible::Name), u"Results"_s);
    QCOMPARE(list->child(0)->text(QAccessible::Name), u"Film.1, Film"_s);
}

void ResultsTest::selectionFillsAndShowsThePanel()
{
    m_view->showResults(3);
    select(1);
    QCOMPARE(label("detailFileLabel"), u"Film.2"_s);
    QCOMPARE(label("detailTitleLabel"), u"Film"_s);
    QCOMPARE(label("detailLanguageLabel"), u"English"_s);
    QCOMPARE(constraint()->constant(), 0.0);
    QCOMPARE(scrollView()->contentInsets(), QMargins(0, 80, 0, 168));
}

void ResultsTest::selectionWithThePanelShownDoesNotMoveIt()
{
    m_view->showResults(3);
    select(0);
    int movements = 0;
    connect(constraint(), &LayoutConstraint::constantChanged, this, [&] { ++movements; });
    select(2);
    QCOMPARE(label("detailFileLabel"), u"Film.3"_s);
    QCOMPARE(movements, 0);
    QCOMPARE(constraint()->constant(), 0.0);
}

void ResultsTest::deselectionHidesThePanel()
{
    m_view->showResults(3);
    select(0);
    m_view->table()->deselectAll();
    QCOMPARE(constraint()->constant(), -168.0);
    QCOMPARE(scrollView()->contentInsets(), QMargins(0, 80, 0, 0));
}

void ResultsTest::panelStartsHiddenWithInsets()
{
    QCOMPARE(constraint()->constant(), -168.0);
    QCOMPARE(scrollView()->contentInsets(), QMargins(0, 80, 0, 0));
}

void ResultsTest::insetsChangeBeforeThePanelMoves()
{
    Animator::setReducedMotion(false);
    m_view->showResults(3);
    QMargins insetsAtFirstMovement;
    connect(constraint(), &LayoutConstraint::presentedConstantChanged, this, [&] {
        if (insetsAtFirstMovement.isNull())
            insetsAtFirstMovement = scrollView()->contentInsets();
    });
    select(0);
    QCOMPARE(scrollView()->contentInsets(), QMargins(0, 80, 0, 168));
    QVERIFY(constraint()->presentedConstant() < 0);
    QTRY_COMPARE(constraint()->presentedConstant(), 0.0);
    QCOMPARE(insetsAtFirstMovement, QMargins(0, 80, 0, 168));
}

void ResultsTest::shownPanelScrollsToTheSelectedRowWhenAnimated()
{
    m_view->showResults(50);
    QScrollBar *bar = m_view->table()->verticalScrollBar();
    select(30);
    bar->setValue(0);
    QCOMPARE(bar->value(), 0);
    QTRY_VERIFY((m_view->turn(), bar->value() > 0));
    const QRect row = m_view->table()->visualRect(m_view->table()->model()->index(30, 0));
    QVERIFY(m_view->table()->viewport()->rect().contains(row));
}

void ResultsTest::shownPanelDoesNotScrollWithoutAnimation()
{
    m_view->showResults(50);
    QScrollBar *bar = m_view->table()->verticalScrollBar();
    {
        const QSignalBlocker quiet(m_view->table()->selectionModel());
        select(30);
    }
    bar->setValue(0);
    m_view->controller->updateUIState(false);
    QCOMPARE(constraint()->constant(), 0.0);
    m_view->turn();
    QCOMPARE(bar->value(), 0);
}

void ResultsTest::posterIsAskedForByImdbId()
{
    m_view->showResults(1);
    select(0);
    QCOMPARE(m_view->metadata->finds, QStringList{u"tt9000001"_s});
    m_view->metadata->findCompletions.front()(found(1, 0));
    QCOMPARE(m_view->metadata->fetchSizes, QList<QSize>{QSize(154, 154)});
    m_view->metadata->imageCompletions.front()(picture(Qt::red));
    QVERIFY(poster()->image());
}

void ResultsTest::subtitleWithoutImdbIdHasNoPoster()
{
    auto anonymous = std::make_shared<Subtitle>();
    anonymous->subFileName = u"Anonymous"_s;
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->service->finishLast(answerWith({anonymous}));
    m_view->turn();
    select(0);
    QVERIFY(m_view->metadata->finds.isEmpty());
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"No poster image found"_s});
    QVERIFY(!poster()->image());
}

void ResultsTest::movieComesBeforeShow()
{
    m_view->showResults(1);
    select(0);
    m_view->metadata->findCompletions.front()(found(2, 1));
    QCOMPARE(m_view->metadata->fetchedItems.first().handle.toString(), u"movie 0"_s);
}

void ResultsTest::showServesWhereNoMovieIs()
{
    m_view->showResults(1);
    select(0);
    m_view->metadata->findCompletions.front()(found(0, 2));
    QCOMPARE(m_view->metadata->fetchedItems.first().handle.toString(), u"show 0"_s);
}

void ResultsTest::nothingFoundLeavesThePosterEmpty()
{
    m_view->showResults(1);
    select(0);
    m_view->metadata->findCompletions.front()(found(0, 0));
    QVERIFY(m_view->metadata->fetchedItems.isEmpty());
    QVERIFY(!poster()->image());
    QVERIFY(m_sandbox.printedLines().isEmpty());
}

void ResultsTest::findFailureIsOnlyPrinted()
{
    m_view->showResults(1);
    select(0);
    m_view->metadata->findCompletions.front()(refusal());
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: The film database refuses."_s});
    QVERIFY(m_view->metadata->fetchedItems.isEmpty());
    QCOMPARE(label("detailFileLabel"), u"Film.1"_s);
}

void ResultsTest::fetchFailureIsOnlyPrinted()
{
    m_view->showResults(1);
    select(0);
    m_view->metadata->findCompletions.front()(found(1, 0));
    m_view->metadata->imageCompletions.front()(refusal());
    QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: The film database refuses."_s});
    QVERIFY(!poster()->image());
}

void ResultsTest::lateLookupShowsItsPosterAllTheSame()
{
    m_view->showResults(2);
    select(0);
    select(1);
    m_view->metadata->findCompletions.at(1)(found(1, 0));
    m_view->metadata->findCompletions.at(0)(found(1, 0));
    m_view->metadata->imageCompletions.at(0)(picture(Qt::blue));
    m_view->metadata->imageCompletions.at(1)(picture(Qt::red));
    const QPixmap shown = poster()->image()->pixmap(QSizeF(20, 30), 1);
    QCOMPARE(shown.toImage().pixelColor(5, 5), QColor(Qt::red));
    QCOMPARE(label("detailFileLabel"), u"Film.2"_s);
}

void ResultsTest::posterIsClearedWhenThePanelIsFilled()
{
    m_view->showResults(2);
    select(0);
    m_view->metadata->findCompletions.front()(found(1, 0));
    m_view->metadata->imageCompletions.front()(picture(Qt::red));
    select(1);
    QVERIFY(!poster()->image());
}

void ResultsTest::posterFillsItsPlaceWithRoundedCorners()
{
    m_view->showResults(1);
    select(0);
    QVERIFY(poster()->wantsLayer());
    QVERIFY(poster()->canDrawSubviewsIntoLayer());
    QCOMPARE(poster()->layer()->cornerRadius(), 6.0);
    QVERIFY(poster()->layer()->masksToBounds());
    QCOMPARE(poster()->layer()->contentsGravity(), ContentsGravity::ResizeAspectFill);
}

void ResultsTest::posterForAControllerThatIsGone()
{
    m_view->showResults(1);
    select(0);
    m_view->metadata->findCompletions.front()(found(1, 0));
    const auto late = m_view->metadata->imageCompletions.front();
    const auto lateFind = m_view->metadata->findCompletions.front();
    m_view->window.reset();
    m_view->controller.reset();
    late(picture(Qt::red));
    lateFind(found(1, 0));
    QCOMPARE(m_view->metadata->fetchedItems.size(), 1);
    m_view = std::make_unique<MainViewFixture>();
}

void ResultsTest::emptyResultsDropTheSelection()
{
    m_view->showResults(3);
    select(2);
    m_view->showResults(1);
    QCOMPARE(m_view->table()->selectedRow(), -1);
    QCOMPARE(constraint()->constant(), -168.0);
}

void ResultsTest::reloadKeepsTheSelectedRow()
{
    m_view->showResults(3);
    select(1);
    m_view->showResults(2);
    QCOMPARE(m_view->table()->selectedRow(), 1);
    QCOMPARE(label("detailFileLabel"), u"Film.2"_s);
    QCOMPARE(constraint()->constant(), 0.0);
}

void ResultsTest::storedListDoesNotChangeTheRowsShown()
{
    m_view->showResults(5);
    m_view->controller->searchForText(u"a"_s, std::nullopt);
    m_view->service->finishLast(answerWith(1));
    QCOMPARE(m_view->table()->numberOfRows(), 5);
    QCOMPARE(
        qobject_cast<SubtitleCellView *>(m_view->controller->tableViewViewForRow(4))->titleTextField->text(),
        u"Film.5"_s);
    select(4); // fills the panel from the rows shown
    QCOMPARE(label("detailFileLabel"), u"Film.5"_s);
}

void ResultsTest::hundredThousandRowsAreShown()
{
    constexpr int Rows = 100'000;
    m_view->showResults(Rows);
    QCOMPARE(m_view->table()->numberOfRows(), Rows);
    select(Rows - 1);
    m_view->table()->scrollRowToVisible(Rows - 1);
    QVERIFY(!m_view->window->grab().isNull());
    QCOMPARE(label("detailFileLabel"), u"Film.100000"_s);
}

QTEST_MAIN(ResultsTest)
#include "ResultsTest.moc"
