#include "GermanTexts.h"
#include "WindowFixture.h"

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/ChromeColors.h>
#include <ui/window/TitlebarAccessoryViewController.h>

#include <QAccessible>
#include <QPaintEvent>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{
class ButtonAccessory : public TitlebarAccessoryViewController
{
public:
    ButtonAccessory(const QString &text, int width, LayoutAttribute end) : m_text(text), m_width(width)
    {
        setLayoutAttribute(end);
    }
    void loadView() override
    {
        auto button = std::make_unique<QPushButton>(m_text);
        button->setFixedSize(m_width, 22);
        setView(std::move(button));
    }

private:
    QString m_text;
    int m_width;
};

/// Counts how often the middle of a widget is drawn.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QPoint middle = qobject_cast<QWidget *>(watched)->rect().center();
        if (event->type() == QEvent::Paint && static_cast<QPaintEvent *>(event)->region().contains(middle))
            ++count;
        return false;
    }
};

QRect inWindow(const QWidget *widget)
{
    return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

QString nameOfFocus()
{
    return QAccessible::queryAccessibleInterface(QApplication::focusWidget())->text(QAccessible::Name);
}
} // namespace

class TitleBarTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<ui::Window>();
        m_window->setWindowTitle(u"Plovendix"_s);
        m_window->setContentSize({760, 640});
        m_titleBar = m_window->findChild<TitleBar *>();
        m_window->show();
    }
    void cleanup() { m_window.reset(); }

    void buttonsStandAtTheRightEndWithoutGaps()
    {
        QCOMPARE(inWindow(button(u"Close"_s)), QRect(760 - 12 - 22, 8, 22, 22));
        QCOMPARE(inWindow(button(u"Maximize"_s)), QRect(760 - 12 - 52, 8, 22, 22));
        QCOMPARE(inWindow(button(u"Minimize"_s)), QRect(760 - 12 - 82, 8, 22, 22));
        m_window->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
        QVERIFY(m_window->isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QVERIFY(!button(u"Maximize"_s)->isVisible());
        QCOMPARE(inWindow(button(u"Minimize"_s)).right(), 760 - 12 - 30 - 1);
    }

    void accessoriesStandAtTheirEndsAndTheTitleBetweenThem()
    {
        const auto trailing = addAccessory(u"English"_s, 250, LayoutAttribute::Trailing);
        const auto leading = addAccessory(u"Menu"_s, 26, LayoutAttribute::Leading);
        QCOMPARE(static_cast<int>(TitlebarAccessoryViewController().layoutAttribute()), 6); // trailing
        QCOMPARE(static_cast<int>(leading->layoutAttribute()), 5);
        QVERIFY(trailing->view()->isVisible());
        QCOMPARE(inWindow(trailing->view()), QRect(666 - 16 - 250, 8, 250, 22));
        QCOMPARE(inWindow(leading->view()), QRect(12, 8, 26, 22));
        QCOMPARE(trailing->window(), m_window.get());
        const QRect title = m_titleBar->titleRect();
        QVERIFY(title.width() > 0 && title.right() < inWindow(trailing->view()).left());
        QCOMPARE(title.center().x(), 760 / 2 - 1);
    }

    void accessoryThatGrowsIsLaidOutAgain()
    {
        const auto accessory = addAccessory(u"English"_s, 69, LayoutAttribute::Trailing);
        const int right = inWindow(accessory->view()).right();
        accessory->view()->setFixedSize(140, 22);
        QTRY_COMPARE(accessory->view()->width(), 140);
        QTRY_COMPARE(inWindow(accessory->view()).right(), right);
    }

    void hiddenTitleIsOnlyNotDrawn()
    {
        const QImage shown = m_titleBar->grab().toImage();
        m_window->setTitleVisibility(ui::Window::TitleVisibility::Hidden);
        const QImage hidden = m_titleBar->grab().toImage();
        QVERIFY(hidden != shown);
        QCOMPARE(QAccessible::queryAccessibleInterface(m_window.get())->text(QAccessible::Name),
                 u"Plovendix"_s);
        m_window->setTitleVisibility(ui::Window::TitleVisibility::Visible);
        m_window->setWindowTitle(QString());
        QCOMPARE(m_titleBar->grab().toImage(), hidden);
    }

    void isDrawnOverOpaqueContentWhenTheWindowBecomesActive()
    {
        const auto content = ViewController::make<ViewController>();
        content->view()->setAutoFillBackground(true);
        // The program's palette: inactive colours that differ would be a reason for Qt to draw again.
        m_window->setPalette(ChromeColors::paletteFor(false, Qt::blue));
        m_window->setFullSizeContentView(true);
        m_window->setContentViewController(content);
        ui::Window other;
        activate(other);
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QCoreApplication::sendPostedEvents(); // what the other window made inactive is drawn
        PaintCounter paints(m_titleBar);
        activate(*m_window);
        QTRY_VERIFY(paints.count > 0);
    }

    void doubleClickMaximisesAndRestores()
    {
        const QRect geometry = m_window->geometry();
        QTest::mouseDClick(m_titleBar, Qt::RightButton, {}, {300, 15});
        QVERIFY(!m_window->isMaximized());
        QTest::mouseDClick(m_titleBar, Qt::LeftButton, {}, {300, 15});
        QVERIFY(m_window->isMaximized());
        QTest::mouseDClick(m_titleBar, Qt::LeftButton, {}, {300, 15});
        QVERIFY(!m_window->isMaximized());
        QCOMPARE(m_window->geometry(), geometry);
    }

    void windowThatCannotBeMaximisedStaysSmall_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<bool>("resizable");
        QTest::newRow("without the button") << true << true;
        QTest::newRow("of a fixed size") << false << false;
    }
    void windowThatCannotBeMaximisedStaysSmall()
    {
        QFETCH(bool, hidden);
        QFETCH(bool, resizable);
        m_window->setStandardButtonHidden(ui::Window::StandardButton::Zoom, hidden);
        m_window->setResizable(resizable);
        QTest::mouseDClick(m_titleBar, Qt::LeftButton, {}, {300, 15});
        QVERIFY(!m_window->isMaximized());
    }

    void maximiseButtonChangesItsNameAndTakesNoFocus()
    {
        const auto content = ViewController::make<ContentController>();
        m_window->setContentViewController(content);
        m_window->makeFirstResponder(content->field);
        QAbstractButton *zoom = button(u"Maximize"_s);
        QTest::mouseClick(zoom, Qt::LeftButton);
        QVERIFY(m_window->isMaximized());
        QCOMPARE(zoom->accessibleName(), u"Restore"_s);
        QTest::mouseClick(zoom, Qt::LeftButton);
        QVERIFY(!m_window->isMaximized());
        QCOMPARE(zoom->accessibleName(), u"Maximize"_s);
        QCOMPARE(m_window->focusWidget(), content->field);
    }

    void namesAreInThePersonsLanguage()
    {
        const GermanTexts german(m_sandbox, {{u"Close"_s, u"Schließen"_s}});
        const ui::Window window;
        QVERIFY(buttonNamed(window, u"Schließen"_s));
        QVERIFY(buttonNamed(window, u"Minimize"_s));
    }

    void tabVisitsTheContentFirst()
    {
        addAccessory(u"English"_s, 69, LayoutAttribute::Trailing);
        addAccessory(u"Menu"_s, 26, LayoutAttribute::Leading);
        const auto content = ViewController::make<ContentController>();
        m_window->setContentViewController(content);
        activate(*m_window);
        m_window->makeFirstResponder(content->field);
        QStringList visited;
        for (int i = 0; i < 5; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            visited += nameOfFocus();
        }
        QCOMPARE(visited, (QStringList{u"Menu"_s, u"English"_s, u"Minimize"_s, u"Maximize"_s, u"Close"_s}));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), content->field);
        QTest::keyClick(content->field, Qt::Key_Backtab);
        QCOMPARE(nameOfFocus(), u"Close"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QVERIFY(!m_window->isVisible());
    }

private:
    QAbstractButton *button(const QString &name) const { return buttonNamed(*m_window, name); }

    std::shared_ptr<ButtonAccessory> addAccessory(const QString &text, int width, LayoutAttribute end)
    {
        auto accessory = ViewController::make<ButtonAccessory>(text, width, end);
        m_window->addTitlebarAccessoryViewController(accessory);
        return accessory;
    }

    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    TitleBar *m_titleBar = nullptr;
};

PLOVENDIX_GUI_TEST(TitleBarTest)
#include "TitleBarTest.moc"
