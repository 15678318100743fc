#include "MainViewFixture.h"

#include <tests/support/TestMain.h>
#include <ui/controls/Label.h>
#include <ui/views/Animator.h>
#include <ui/views/ImageView.h>

using namespace Qt::StringLiterals;

namespace
{
base::Error refusal()
{
    return base::Error{u"Metadata"_s, 3, u"The film database refuses."_s};
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

class PosterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void posterIsAskedForByImdbId()
    {
        m_view->showResults(1);
        select(0);
        QCOMPARE(m_view->metadata->finds, QStringList{u"tt9000001"_s});
        m_view->metadata->findCompletions.front()(found(1, 0));
        QCOMPARE(m_view->metadata->fetchSizes, QList<QSize>{QSize(154, 154)});
        m_view->metadata->imageCompletions.front()(picture(Qt::red));
        QVERIFY(poster()->image());
    }

    void subtitleWithoutImdbIdHasNoPoster()
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

    void movieComesBeforeShow()
    {
        m_view->showResults(1);
        select(0);
        m_view->metadata->findCompletions.front()(found(2, 1));
        QCOMPARE(m_view->metadata->fetchedItems.first().handle.toString(), u"movie 0"_s);
    }

    void showServesWhereNoMovieIs()
    {
        m_view->showResults(1);
        select(0);
        m_view->metadata->findCompletions.front()(found(0, 2));
        QCOMPARE(m_view->metadata->fetchedItems.first().handle.toString(), u"show 0"_s);
    }

    void nothingFoundLeavesThePosterEmpty()
    {
        m_view->showResults(1);
        select(0);
        m_view->metadata->findCompletions.front()(found(0, 0));
        QVERIFY(m_view->metadata->fetchedItems.isEmpty());
        QVERIFY(!poster()->image());
        QVERIFY(m_sandbox.printedLines().isEmpty());
    }

    void findFailureIsOnlyPrinted()
    {
        m_view->showResults(1);
        select(0);
        m_view->metadata->findCompletions.front()(refusal());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: The film database refuses."_s});
        QVERIFY(m_view->metadata->fetchedItems.isEmpty());
        QCOMPARE(label("detailFileLabel"), u"Film.1"_s);
    }

    void fetchFailureIsOnlyPrinted()
    {
        m_view->showResults(1);
        select(0);
        m_view->metadata->findCompletions.front()(found(1, 0));
        m_view->metadata->imageCompletions.front()(refusal());
        QCOMPARE(m_sandbox.printedLines(), QStringList{u"Error: The film database refuses."_s});
        QVERIFY(!poster()->image());
    }

    void lateLookupShowsItsPosterAllTheSame()
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

    void posterIsClearedWhenThePanelIsFilled()
    {
        m_view->showResults(2);
        select(0);
        m_view->metadata->findCompletions.front()(found(1, 0));
        m_view->metadata->imageCompletions.front()(picture(Qt::red));
        select(1);
        QVERIFY(!poster()->image());
    }

    void posterFillsItsPlaceWithRoundedCorners()
    {
        m_view->showResults(1);
        select(0);
        QVERIFY(poster()->wantsLayer());
        QCOMPARE(poster()->layer()->cornerRadius(), 6.0);
        QVERIFY(poster()->layer()->masksToBounds());
        QCOMPARE(poster()->layer()->contentsGravity(), ContentsGravity::ResizeAspectFill);
    }

    void posterForAControllerThatIsGone()
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

    void errorForAControllerThatIsGoneIsNotPrinted()
    {
        m_view->showResults(1);
        select(0);
        m_view->metadata->findCompletions.front()(found(1, 0));
        const auto lateFind = m_view->metadata->findCompletions.front();
        const auto late = m_view->metadata->imageCompletions.front();
        m_view->window.reset();
        m_view->controller.reset();
        lateFind(refusal());
        late(refusal());
        QCOMPARE(m_sandbox.printedLines(), QStringList());
        m_view = std::make_unique<MainViewFixture>();
    }

    void posterFadesIn()
    {
        Animator::setReducedMotion(false);
        m_view->showResults(1);
        select(0);
        useLayerWithoutATransition(std::nullopt); // the clearing has left one on the layer before
        m_view->metadata->findCompletions.front()(found(1, 0));
        m_view->metadata->imageCompletions.front()(picture(Qt::red));
        QVERIFY(poster()->layer()->fadeProgress() < 1.0);
        QTRY_COMPARE(poster()->layer()->fadeProgress(), 1.0);
    }

    void posterIsClearedWithAFade()
    {
        Animator::setReducedMotion(false);
        m_view->showResults(2);
        select(0);
        useLayerWithoutATransition(ui::Image(picture(Qt::red))); // the poster's own fade has left one as well
        select(1);
        QVERIFY(!poster()->image());
        QVERIFY(!poster()->layer()->contents());
        QVERIFY(poster()->layer()->fadeProgress() < 1.0);
    }

private:
    ImageView *poster() const { return m_view->child<ImageView>("detailViewImageView"); }
    QString label(const char *name) const { return m_view->child<ui::Label>(name)->text(); }
    void select(int row) const { m_view->table()->selectRow(row); }
    /// A transition stays on its layer for later changes; this layer shows the image and has none.
    void useLayerWithoutATransition(const std::optional<ui::Image> &image) const
    {
        auto layer = std::make_unique<ui::Layer>();
        layer->setContents(image);
        poster()->setLayer(std::move(layer));
    }

    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(PosterTest)
#include "PosterTest.moc"
