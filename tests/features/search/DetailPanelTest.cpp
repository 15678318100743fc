#include "MainViewFixture.h"

#include <tests/support/TestMain.h>
#include <ui/controls/BottomPanelView.h>
#include <ui/controls/Label.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>
#include <ui/views/LayoutConstraint.h>

#include <QScrollBar>
#include <QVariantAnimation>

using namespace Qt::StringLiterals;

namespace
{
constexpr QMargins InsetsWithPanel(0, 80, 0, 168);
constexpr QMargins InsetsWithoutPanel(0, 80, 0, 0);

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

/// How the panel is filled, comes and goes. Time is what a test sets the movement to.
class DetailPanelTest final : public MainViewTest
{
    Q_OBJECT

private:
    QString label(const char *name) const { return m_view->child<ui::Label>(name)->text(); }
    void select(int row) const { m_view->table()->selectRow(row); }
    QMargins insets() const { return m_view->widget("scrollView")->contentsMargins(); }
    QScrollBar *bar() const { return m_view->table()->verticalScrollBar(); }
    ImageView *poster() const { return m_view->child<ImageView>("detailViewImageView"); }
    LayoutConstraint *constraint() const
    {
        return static_cast<BottomPanelView *>(m_view->controller->view())->bottomConstraint();
    }
    /// The panel's movement under way, or nothing.
    QVariantAnimation *movement() const
    {
        const auto movements = constraint()->findChildren<QVariantAnimation *>();
        for (QVariantAnimation *candidate : movements) {
            if (candidate->state() == QAbstractAnimation::Running)
                return candidate;
        }
        return nullptr;
    }
    void finishMovement() const
    {
        QVERIFY(movement());
        movement()->setCurrentTime(movement()->duration());
    }
    /// Shows many rows and selects one with motion switched on; the panel begins to move.
    void selectWithMotion(int row) const
    {
        Animator::setReducedMotion(false);
        m_view->showResults(50);
        select(row);
        bar()->setValue(0);
    }
    /// The same with the first row, and has the panel come to rest.
    void showPanel() const
    {
        selectWithMotion(0);
        finishMovement();
        m_view->turn();
    }
    /// Selects the one result and answers the look-up of its film.
    void lookUp(const Result<FindResult> &result) const
    {
        m_view->showResults(1);
        select(0);
        m_view->metadata->findCompletions.front()(result);
    }
    void givePicture(const Result<QImage> &image, std::size_t index = 0) const
    {
        m_view->metadata->imageCompletions.at(index)(image);
    }
    /// A transition stays on its layer for later changes; this layer shows the image and has none.
    void useLayerWithoutATransition(const std::optional<ui::Image> &image) const
    {
        auto layer = std::make_unique<ui::Layer>();
        layer->setContents(image);
        poster()->setLayer(std::move(layer));
    }

private Q_SLOTS:
    void panelStartsHiddenWithoutAMovement()
    {
        QCOMPARE(insets(), InsetsWithoutPanel);
        Animator::setReducedMotion(false);
        const auto controller = ViewController::make<MainViewController>();
        const auto *bottom = static_cast<BottomPanelView *>(controller->view())->bottomConstraint();
        QCOMPARE(bottom->constant(), -168.0);
        QCOMPARE(bottom->presentedConstant(), -168.0);
    }

    void selectionFillsAndShowsThePanel()
    {
        m_view->showResults(3);
        select(1);
        QCOMPARE(label("detailFileLabel"), u"Film.2"_s);
        QCOMPARE(label("detailTitleLabel"), u"Film"_s);
        QCOMPARE(label("detailLanguageLabel"), u"English"_s);
        QCOMPARE(constraint()->constant(), 0.0);
        QCOMPARE(insets(), InsetsWithPanel);
        m_view->table()->deselectAll();
        QCOMPARE(constraint()->constant(), -168.0);
        QCOMPARE(insets(), InsetsWithoutPanel);
    }

    void panelInItsPlaceIsLeftAlone()
    {
        m_view->showResults(50);
        m_view->widget("scrollView")->setContentsMargins(0, 80, 0, 100);
        m_view->controller->updateUIState(true);
        QCOMPARE(insets(), QMargins(0, 80, 0, 100));
        select(0);
        m_view->turn();
        m_view->widget("scrollView")->setContentsMargins(0, 80, 0, 100);
        select(1);
        bar()->setValue(bar()->maximum());
        m_view->turn(); // nothing moved, so nothing scrolls
        QCOMPARE(bar()->value(), bar()->maximum());
        QCOMPARE(label("detailFileLabel"), u"Film.2"_s);
        QCOMPARE(insets(), QMargins(0, 80, 0, 100));
    }

    void panelIsShownInAQuarterOfASecond()
    {
        selectWithMotion(0);
        QVERIFY(movement());
        QCOMPARE(movement()->duration(), 250);
        QCOMPARE(constraint()->presentedConstant(), -168.0);
        QCOMPARE(insets(), InsetsWithPanel); // before it moves
        finishMovement();
        QCOMPARE(constraint()->presentedConstant(), 0.0);
        QVERIFY(!movement());
    }

    void panelIsHiddenInAQuarterOfASecond()
    {
        showPanel();
        m_view->table()->deselectAll();
        QCOMPARE(constraint()->constant(), -168.0);
        QCOMPARE(constraint()->presentedConstant(), 0.0);
        QCOMPARE(insets(), InsetsWithoutPanel);
        QVERIFY(movement());
        QCOMPARE(movement()->duration(), 250);
        finishMovement();
        QCOMPARE(constraint()->presentedConstant(), -168.0);
    }

    void panelIsHiddenAnimatedWhenTheResultsAreCleared()
    {
        showPanel();
        m_view->controller->cancelQuery(nullptr);
        QVERIFY(movement());
        QCOMPARE(movement()->endValue().toReal(), -168.0);
        QCOMPARE(constraint()->presentedConstant(), 0.0);
    }

    void rowIsScrolledToOnTheTurnAfterTheMovement()
    {
        selectWithMotion(30);
        QVERIFY(movement());
        movement()->setCurrentTime(movement()->duration() - 1);
        m_view->turn();
        QCOMPARE(bar()->value(), 0);
        finishMovement();
        QCOMPARE(bar()->value(), 0);
        m_view->turn();
        QVERIFY(bar()->value() > 0);
        const QRect row = m_view->table()->visualRect(m_view->table()->model()->index(30, 0));
        QVERIFY(m_view->table()->viewport()->rect().contains(row));
    }

    void nothingIsScrolledToWithoutAnimation()
    {
        m_view->showResults(50);
        {
            const QSignalBlocker quiet(m_view->table()->selectionModel());
            select(30);
        }
        bar()->setValue(0);
        m_view->controller->updateUIState(false);
        QCOMPARE(constraint()->constant(), 0.0);
        m_view->turn();
        QCOMPARE(bar()->value(), 0);
    }

    void nothingIsScrolledToWhenThePanelIsHidden()
    {
        showPanel();
        bar()->setValue(bar()->maximum() / 2);
        const int before = bar()->value();
        QVERIFY(before > 0);
        m_view->table()->deselectAll();
        finishMovement();
        m_view->turn();
        QCOMPARE(bar()->value(), before);
    }

    void nothingMovesOnceTheControllerIsGone()
    {
        selectWithMotion(30);
        close();
        m_view->turn();
        QVERIFY(m_sandbox.printedLines().isEmpty());
    }

    void posterIsLookedUpByImdbId()
    {
        lookUp(found(1, 0));
        QCOMPARE(m_view->metadata->finds, QStringList{u"tt9000001"_s});
        QCOMPARE(m_view->metadata->fetchSizes, QList<QSize>{QSize(154, 154)});
        givePicture(picture(Qt::red));
        QVERIFY(poster()->image());
        QVERIFY(poster()->wantsLayer());
        QCOMPARE(poster()->layer()->cornerRadius(), 6.0);
        QVERIFY(poster()->layer()->masksToBounds());
        QCOMPARE(poster()->layer()->contentsGravity(), ContentsGravity::ResizeAspectFill);
        m_view->showResults(2);
        select(1);
        QVERIFY(!poster()->image()); // cleared each time the panel is filled
    }

    void subtitleWithoutImdbIdHasNoPoster()
    {
        m_view->search();
        m_view->answer(answerWith({std::make_shared<Subtitle>()}));
        select(0);
        QVERIFY(m_view->metadata->finds.isEmpty());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"No poster image found"_s});
        QVERIFY(!poster()->image());
    }

    void movieComesBeforeShow_data()
    {
        QTest::addColumn<int>("movies");
        QTest::addColumn<int>("shows");
        QTest::addColumn<QString>("fetched");
        QTest::newRow("both") << 2 << 1 << u"movie 0"_s;
        QTest::newRow("shows") << 0 << 2 << u"show 0"_s;
        QTest::newRow("neither") << 0 << 0 << QString();
    }
    void movieComesBeforeShow()
    {
        QFETCH(int, movies);
        QFETCH(int, shows);
        QFETCH(QString, fetched);
        lookUp(found(movies, shows));
        QCOMPARE(m_view->metadata->fetchedItems.value(0).handle.toString(), fetched);
        QVERIFY(!poster()->image());
        QVERIFY(m_sandbox.printedLines().isEmpty());
    }

    void failureIsOnlyPrinted()
    {
        const QString printed = u"Error: "_s + refusal().localizedDescription;
        lookUp(refusal());
        QCOMPARE(m_sandbox.printedLines(), QStringList{printed});
        QVERIFY(m_view->metadata->fetchedItems.isEmpty());
        m_view->metadata->findCompletions.front()(found(1, 0));
        givePicture(refusal());
        QCOMPARE(m_sandbox.printedLines(), QStringList({printed, printed}));
        QVERIFY(!poster()->image());
        QCOMPARE(label("detailFileLabel"), u"Film.1"_s);
    }

    void lateLookUpShowsItsPosterAllTheSame()
    {
        m_view->showResults(2);
        select(0);
        select(1);
        m_view->metadata->findCompletions.at(1)(found(1, 0));
        m_view->metadata->findCompletions.at(0)(found(1, 0));
        givePicture(picture(Qt::blue), 0);
        givePicture(picture(Qt::red), 1);
        const QPixmap shown = poster()->image()->pixmap(QSizeF(20, 30), 1);
        QCOMPARE(shown.toImage().pixelColor(5, 5), QColor(Qt::red));
        QCOMPARE(label("detailFileLabel"), u"Film.2"_s);
    }

    void posterForAControllerThatIsGoneIsDropped()
    {
        lookUp(found(1, 0));
        const auto lateFind = m_view->metadata->findCompletions.front();
        const auto late = m_view->metadata->imageCompletions.front();
        close();
        late(picture(Qt::red));
        late(refusal());
        lateFind(found(1, 0));
        lateFind(refusal());
        QCOMPARE(m_view->metadata->fetchedItems.size(), 1);
        QCOMPARE(m_sandbox.printedLines(), QStringList());
    }

    void posterComesAndGoesWithAFade()
    {
        Animator::setReducedMotion(false);
        m_view->showResults(2);
        select(0);
        useLayerWithoutATransition(std::nullopt); // the clearing has left one on the layer before
        m_view->metadata->findCompletions.front()(found(1, 0));
        givePicture(picture(Qt::red));
        QVERIFY(poster()->layer()->fadeProgress() < 1.0);
        QTRY_COMPARE(poster()->layer()->fadeProgress(), 1.0);
        useLayerWithoutATransition(ui::Image(picture(Qt::red)));
        select(1);
        QVERIFY(!poster()->image());
        QVERIFY(!poster()->layer()->contents());
        QVERIFY(poster()->layer()->fadeProgress() < 1.0);
    }
};

PLOVENDIX_GUI_TEST(DetailPanelTest)
#include "DetailPanelTest.moc"
