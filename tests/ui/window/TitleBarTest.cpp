#include "WindowFixture.h"

#include <base/Bundle.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/ChromeColors.h>
#include <ui/window/TitleBar.h>
#include <ui/window/TitlebarAccessoryViewController.h>

#include <QAccessible>
#include <QApplication>
#include <QPushButton>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{
class ButtonAccessory : public TitlebarAccessoryViewController
{
public:
    ButtonAccessory(const QString &text, const QSize &size, LayoutAttribute end) : m_text(text), m_size(size)
    {
        setLayoutAttribute(end);
    }
    void loadView() override
    {
        auto button = std::make_unique<QPushButton>(m_text);
        button->setFixedSize(m_size);
        setView(std::move(button));
    }

private:
    QString m_text;
    QSize m_size;
};

/// Counts how often the middle of a widget is drawn.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const QPoint middle = qobject_cast<QWidget *>(watched)->rect().center();
        if (event->type() == QEvent::Paint && static_cast<QPaintEvent *>(event)->region().contains(middle))
            ++m_count;
        return false;
    }

private:
    int m_count = 0;
};

QRect inWindow(const QWidget *widget)
{
    return {widget->mapTo(widget->window(), QPoint()), widget->size()};
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

    void buttonsStandAtTheRightEnd()
    {
        QCOMPARE(inWindow(button(u"Close"_s)), QRect(760 - 12 - 22, 8, 22, 22));
        QCOMPARE(inWindow(button(u"Maximize"_s)), QRect(760 - 12 - 52, 8, 22, 22));
        QCOMPARE(inWindow(button(u"Minimize"_s)), QRect(760 - 12 - 82, 8, 22, 22));
        for (const QString &name : {u"Close"_s, u"Maximize"_s, u"Minimize"_s})
            QCOMPARE(QAccessible::queryAccessibleInterface(button(name))->role(), QAccessible::Button);
    }

    void hiddenButtonsLeaveNoGap()
    {
        m_window->setStandardButtonHidden(ui::Window::StandardButton::Zoom, true);
        QVERIFY(m_window->isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QVERIFY(!button(u"Maximize"_s)->isVisible());
        QCOMPARE(inWindow(button(u"Minimize"_s)).right(), 760 - 12 - 30 - 1);
        m_window->setStandardButtonHidden(ui::Window::StandardButton::Zoom, false);
        QVERIFY(button(u"Maximize"_s)->isVisible());
    }

    void accessoriesStandAtTheirEnds()
    {
        const auto trailing =
            ViewController::make<ButtonAccessory>(u"English"_s, QSize(69, 22), LayoutAttribute::Trailing);
        const auto leading =
            ViewController::make<ButtonAccessory>(u"Menu"_s, QSize(26, 22), LayoutAttribute::Leading);
        m_window->addTitlebarAccessoryViewController(trailing);
        m_window->addTitlebarAccessoryViewController(leading);
        QVERIFY(trailing->view()->isVisible());
        QCOMPARE(inWindow(trailing->view()), QRect(666 - 16 - 69, 8, 69, 22));
        QCOMPARE(inWindow(leading->view()), QRect(12, 8, 26, 22));
        QCOMPARE(trailing->window(), m_window.get());
    }

    void accessoryThatGrowsIsLaidOutAnew()
    {
        const auto accessory =
            ViewController::make<ButtonAccessory>(u"English"_s, QSize(69, 22), LayoutAttribute::Trailing);
        m_window->addTitlebarAccessoryViewController(accessory);
        const int right = inWindow(accessory->view()).right();
        accessory->view()->setFixedSize(140, 22);
        QTRY_COMPARE(accessory->view()->width(), 140);
        QTRY_COMPARE(inWindow(accessory->view()).right(), right);
    }

    void titleKeepsClearOfAccessories()
    {
        const auto wide =
            ViewController::make<ButtonAccessory>(u"English"_s, QSize(250, 22), LayoutAttribute::Trailing);
        m_window->addTitlebarAccessoryViewController(wide);
        const QRect title = m_titleBar->titleRect();
        QVERIFY(title.right() < inWindow(wide->view()).left());
        QCOMPARE(title.center().x(), 760 / 2 - 1);
        QVERIFY(title.width() > 0);
    }

    void titleStandsInTheMiddleOfTheFrame()
    {
        QImage image(m_titleBar->size(), QImage::Format_RGB32);
        m_titleBar->render(&image);
        const QRgb ground = image.pixel(100, 10);
        int first = -1;
        int last = -1;
        for (int x = 200; x < 600; ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixel(x, y) == ground)
                    continue;
                first = first < 0 ? x : first;
                last = x;
            }
        }
        QVERIFY2(first > 0, "No title is drawn");
        QVERIFY(qAbs((first + last) / 2 - 380) <= 2);
    }

    void hiddenTitleIsNotDrawn()
    {
        m_window->setTitleVisibility(ui::Window::TitleVisibility::Hidden);
        QCOMPARE(m_window->titleVisibility(), ui::Window::TitleVisibility::Hidden);
        QImage image(m_titleBar->size(), QImage::Format_RGB32);
        m_titleBar->render(&image);
        const QRgb ground = image.pixel(100, 10);
        for (int x = 200; x < 600; ++x) {
            for (int y = 0; y < image.height(); ++y)
                QCOMPARE(image.pixel(x, y), ground);
        }
        // It is hidden from sight alone.
        QCOMPARE(QAccessible::queryAccessibleInterface(m_window.get())->text(QAccessible::Name),
                 u"Plovendix"_s);
    }

    void isDrawnAnewOverOpaqueContentWhenTheWindowBecomesActive()
    {
        const auto content = ViewController::make<ViewController>();
        content->view()->setAutoFillBackground(true);
        // The program's palette: one whose inactive colours differ is reason enough for Qt to draw anew.
        m_window->setPalette(ChromeColors::paletteFor(false, Qt::blue));
        m_window->setFullSizeContentView(true);
        m_window->setContentViewController(content);
        ui::Window other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        PaintCounter paints(m_titleBar);
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(paints.count() > 0);
    }

    void doubleClickMaximisesAndRestores()
    {
        const QRect geometry = m_window->geometry();
        QTest::mouseDClick(m_titleBar, Qt::LeftButton, {}, {300, 15});
        QVERIFY(m_window->isMaximized());
        QTest::mouseDClick(m_titleBar, Qt::LeftButton, {}, {300, 15});
        QVERIFY(!m_window->isMaximized());
        QCOMPARE(m_window->geometry(), geometry);
    }

    void doubleClickWithTheRightButtonDoesNothing()
    {
        QTest::mouseDClick(m_titleBar, Qt::RightButton, {}, {300, 15});
        QVERIFY(!m_window->isMaximized());
    }

    void maximiseButtonChangesItsName()
    {
        QAbstractButton *zoom = button(u"Maximize"_s);
        QTest::mouseClick(zoom, Qt::LeftButton);
        QVERIFY(m_window->isMaximized());
        QCOMPARE(zoom->accessibleName(), u"Restore"_s);
        QTest::mouseClick(zoom, Qt::LeftButton);
        QVERIFY(!m_window->isMaximized());
        QCOMPARE(zoom->accessibleName(), u"Maximize"_s);
    }

    void namesAreInThePersonsLanguage();

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

    void tabVisitsTheContentFirst()
    {
        m_window->addTitlebarAccessoryViewController(
            ViewController::make<ButtonAccessory>(u"English"_s, QSize(69, 22), LayoutAttribute::Trailing));
        m_window->addTitlebarAccessoryViewController(
            ViewController::make<ButtonAccessory>(u"Menu"_s, QSize(26, 22), LayoutAttribute::Leading));
        const auto content = ViewController::make<CountingController>();
        m_window->setContentViewController(content);
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        auto *field = content->view()->findChild<QLineEdit *>();
        m_window->makeFirstResponder(field);

        const auto nameOfFocus = [] {
            return QAccessible::queryAccessibleInterface(QApplication::focusWidget())
                ->text(QAccessible::Name);
        };
        QStringList visited;
        for (int i = 0; i < 5; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            visited += nameOfFocus();
        }
        QCOMPARE(visited, (QStringList{u"Menu"_s, u"English"_s, u"Minimize"_s, u"Maximize"_s, u"Close"_s}));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), field);
        QTest::keyClick(field, Qt::Key_Backtab);
        QCOMPARE(nameOfFocus(), u"Close"_s);
    }

    void buttonsTakeNoFocusFromAClick()
    {
        const auto content = ViewController::make<CountingController>();
        m_window->setContentViewController(content);
        auto *field = content->view()->findChild<QLineEdit *>();
        m_window->makeFirstResponder(field);
        QTest::mouseClick(button(u"Maximize"_s), Qt::LeftButton);
        QCOMPARE(m_window->focusWidget(), field);
    }

    void spacePressesAFocusedButton()
    {
        QSignalSpy closed(m_window.get(), &ui::Window::closed);
        button(u"Close"_s)->setFocus();
        QTest::keyClick(button(u"Close"_s), Qt::Key_Space);
        QCOMPARE(closed.size(), 1);
    }

private:
    QAbstractButton *button(const QString &name) const { return buttonNamed(*m_window, name); }

    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    TitleBar *m_titleBar = nullptr;
};

void TitleBarTest::namesAreInThePersonsLanguage()
{
    m_sandbox.writeFile(u"bundle/de.lproj/Localizable.strings"_s, R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>Close</key><string>Schließen</string></dict></plist>)");
    const QString folder = Bundle::main().folder();
    Bundle::setMainFolder(m_sandbox.path(u"bundle"_s));
    Bundle::main().setPreferredLocalizations({u"de"_s});
    const ui::Window window;
    Bundle::setMainFolder(folder);
    QVERIFY(buttonNamed(window, u"Schließen"_s));
    QVERIFY(buttonNamed(window, u"Minimize"_s));
}

PLOVENDIX_GUI_TEST(TitleBarTest)
#include "TitleBarTest.moc"
