#include <base/MainQueue.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QVBoxLayout>

#include <thread>

using namespace Qt::StringLiterals;

namespace
{
/// Writes down what happens to it, in a list that outlives it.
class RecordingController : public ViewController
{
public:
    explicit RecordingController(std::shared_ptr<QStringList> record) : m_record(std::move(record)) {}
    ~RecordingController() override
    {
        *m_record += MainQueue::isMainThread() ? u"destroyed"_s : u"destroyed elsewhere"_s;
    }

    void loadView() override
    {
        *m_record += u"loadView"_s;
        auto container = std::make_unique<QWidget>();
        m_field = new QLineEdit(container.get());
        connect(m_field, &QLineEdit::editingFinished, this, [this] { *m_record += u"edit ended"_s; });
        connect(m_field, &QObject::destroyed, this, [this] { *m_record += u"field went"_s; });
        connect(container.get(), &QObject::destroyed, this, [this] { *m_record += u"view went"_s; });
        setView(std::move(container));
    }
    void viewDidLoad() override { *m_record += isViewLoaded() ? u"viewDidLoad"_s : u"too early"_s; }

    QLineEdit *field() const { return m_field; }

private:
    std::shared_ptr<QStringList> m_record;
    QLineEdit *m_field = nullptr;
};
} // namespace

class ViewControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_record = std::make_shared<QStringList>();
        m_controller = ViewController::make<RecordingController>(m_record);
    }
    void cleanup() { m_controller.reset(); }

    void viewIsLoadedOnFirstUseAndOnce()
    {
        QVERIFY(!m_controller->isViewLoaded());
        QVERIFY(!m_controller->window());
        QCOMPARE(*m_record, QStringList());
        QWidget *view = m_controller->view();
        QVERIFY(view);
        QVERIFY(m_controller->isViewLoaded());
        QCOMPARE(m_controller->view(), view);
        QCOMPARE(*m_record, QStringList({u"loadView"_s, u"viewDidLoad"_s}));
    }

    void controllerThatLoadsNoViewIsAFatalFault()
    {
        struct Viewless : ViewController
        {
            void loadView() override {}
        };
        const FatalFaultTrap trap;
        const auto controller = ViewController::make<Viewless>();
        QVERIFY_EXCEPTION_THROWN(controller->view(), FatalFaultCaught);
    }

    void changedTitleIsEmittedOnce()
    {
        QSignalSpy changes(m_controller.get(), &ViewController::titleChanged);
        m_controller->setTitle(u"Results"_s);
        m_controller->setTitle(u"Results"_s);
        QCOMPARE(m_controller->title(), u"Results"_s);
        QCOMPARE(changes, (QList<QVariantList>{{u"Results"_s}}));
    }

    void titleOfTheClassStandsWhateverIsSet()
    {
        struct General : ViewController
        {
            QString title() const override { return u"General"_s; }
        };
        const auto controller = ViewController::make<General>();
        QSignalSpy changes(controller.get(), &ViewController::titleChanged);
        controller->setTitle(u"Other"_s);
        QCOMPARE(controller->title(), u"General"_s);
        QCOMPARE(changes, (QList<QVariantList>{{u"General"_s}}));
    }

    void controllerGoingFirstTakesItsViewAlong_data()
    {
        QTest::addColumn<bool>("adopted");
        QTest::newRow("adopted") << true;
        QTest::newRow("never adopted") << false;
    }
    void controllerGoingFirstTakesItsViewAlong()
    {
        QFETCH(bool, adopted);
        QWidget adopter;
        auto *layout = new QVBoxLayout(&adopter);
        const QPointer<QWidget> view = m_controller->view();
        const QPointer<QWidget> field = m_controller->field();
        if (adopted)
            layout->addWidget(view);
        m_controller.reset();
        QVERIFY(!view && !field);
        QCOMPARE(layout->count(), 0);
        // The dying view no longer reaches its controller.
        QCOMPARE(m_record->last(), u"destroyed"_s);
        QVERIFY(!m_record->contains(u"field went"_s));
        QVERIFY(!m_record->contains(u"view went"_s));
    }

    void adopterGoingFirstHandsTheViewBack_data()
    {
        QTest::addColumn<int>("generations");
        QTest::newRow("the parent goes") << 1;
        QTest::newRow("an ancestor goes") << 4;
    }
    void adopterGoingFirstHandsTheViewBack()
    {
        QFETCH(int, generations);
        auto ancestor = std::make_unique<QWidget>();
        QWidget *parent = ancestor.get();
        for (int generation = 1; generation < generations; ++generation) {
            auto *child = new QWidget;
            (new QVBoxLayout(parent))->addWidget(child);
            parent = child;
        }
        const QPointer<QWidget> view = m_controller->view();
        (new QVBoxLayout(parent))->addWidget(view);
        ancestor->show();
        QVERIFY(view->isVisible());

        ancestor.reset();
        QVERIFY(view);
        QVERIFY(!view->parentWidget());
        QVERIFY(!view->isVisible());
        QCOMPARE(m_controller->view(), view.data());
        QCOMPARE(m_record->count(u"loadView"_s), 1);
    }

    void viewHandedBackCanBeAdoptedAgain()
    {
        auto first = std::make_unique<QWidget>();
        m_controller->view()->setParent(first.get());
        first.reset();
        auto second = std::make_unique<QWidget>();
        m_controller->view()->setParent(second.get());
        m_controller->view()->show();
        second->show();
        QVERIFY(m_controller->view()->isVisible());
        second.reset();
        QVERIFY(m_controller->isViewLoaded());
    }

    void earlierAdopterThatGoesLeavesTheViewWhereItIs()
    {
        auto first = std::make_unique<QWidget>();
        QWidget second;
        m_controller->view()->setParent(first.get());
        m_controller->view()->setParent(&second);
        first.reset();
        QCOMPARE(m_controller->view()->parentWidget(), &second);
    }

    void viewReplacedByAnotherGoes()
    {
        struct Replacing : ViewController
        {
            void replace() { setView(std::make_unique<QWidget>()); }
        };
        const auto controller = ViewController::make<Replacing>();
        const QPointer<QWidget> earlier = controller->view();
        controller->replace();
        QVERIFY(!earlier);
        QVERIFY(controller->isViewLoaded());
    }

    void windowGoingFirstLeavesTheViewUnlessItHadTheLastReference_data()
    {
        QTest::addColumn<bool>("last");
        QTest::newRow("one of two references") << false;
        QTest::newRow("the last reference") << true;
    }
    void windowGoingFirstLeavesTheViewUnlessItHadTheLastReference()
    {
        QFETCH(bool, last);
        auto window = std::make_unique<ui::Window>();
        window->setContentViewController(m_controller);
        QCOMPARE(m_controller->window(), window.get());
        window->show();
        const QPointer<QWidget> view = m_controller->view();
        if (last)
            m_controller.reset();
        QVERIFY(view);
        window.reset();
        QCOMPARE(view.isNull(), last);
        QCOMPARE(m_record->count(u"destroyed"_s), last ? 1 : 0);
        QVERIFY(last || !m_controller->window());
    }

    void lastReferenceDroppedElsewhereReturnsToTheMainThread()
    {
        m_controller->view();
        std::thread worker([held = std::move(m_controller)]() mutable { held.reset(); });
        worker.join();
        QVERIFY(!m_record->contains(u"destroyed"_s));
        MainQueue::shared().runUntilIdle();
        QCOMPARE(m_record->last(), u"destroyed"_s);
    }

    void editEndedByGoingReachesTheControllerWhileItIsWhole()
    {
        QWidget window;
        m_controller->view()->setParent(&window);
        auto *other = new QLineEdit(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        m_controller->field()->setFocus();
        QTRY_VERIFY(m_controller->field()->hasFocus());
        QTest::keyClicks(m_controller->field(), u"typed"_s);
        other->setFocusPolicy(Qt::StrongFocus);
        m_controller.reset();
        // Whatever the dying view reports comes before the end or not at all.
        QCOMPARE(m_record->last(), u"destroyed"_s);
        QVERIFY(m_record->contains(u"edit ended"_s));
    }

private:
    Sandbox m_sandbox;
    std::shared_ptr<QStringList> m_record;
    std::shared_ptr<RecordingController> m_controller;
};

namespace
{
class Counted : public ViewController
{
public:
    explicit Counted(int &destroyed) : m_destroyed(destroyed) {}
    ~Counted() override { ++m_destroyed; }

private:
    int &m_destroyed;
};
} // namespace

/// Beside the tests: references that outlive the application are dropped, here and elsewhere, without a
/// crash.
static int runViewControllerTest(int argc, char **argv)
{
    static int destroyed = 0;
    int failures = 0;
    std::shared_ptr<ViewController> droppedHere;
    std::shared_ptr<ViewController> droppedElsewhere;
    {
        QApplication application(argc, argv);
        ViewControllerTest test;
        failures = QTest::qExec(&test, argc, argv);
        droppedHere = ViewController::make<Counted>(destroyed);
        droppedElsewhere = ViewController::make<Counted>(destroyed);
        droppedHere->view();
        droppedElsewhere->view();
    }
    droppedHere.reset();
    std::thread([held = std::move(droppedElsewhere)]() mutable { held.reset(); }).join();
    if (destroyed != 0) {
        qWarning("A view went without an application");
        return 1;
    }
    return failures;
}

PLOVENDIX_TEST_FUNCTION(ViewControllerTest, runViewControllerTest)
#include "ViewControllerTest.moc"
