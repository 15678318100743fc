#include <features/feedback/FeedbackViewController.h>

#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/BusyIndicator.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace
{
const FeedbackReport Report{{}, {{u"version"_s, u"1.0"_s}, {u"qt"_s, u"6.4"_s}}, {u"one"_s, u"two"_s}};
} // namespace

/// The feedback window, used as a person does.
class FeedbackViewControllerTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<FeedbackViewController> m_panel;
    QStringList m_signals;

    template <class Type>
    Type *child(const char *name) const
    {
        return m_window->findChild<Type *>(QString::fromLatin1(name));
    }
    QPlainTextEdit &textView() const { return *child<QPlainTextEdit>("textView"); }
    QPushButton &sendButton() const { return *child<QPushButton>("sendButton"); }
    QString details() const { return child<QPlainTextEdit>("detailsView")->toPlainText(); }
    QString status() const
    {
        const auto *label = child<QLabel>("statusLabel");
        return label->isVisible() ? label->text() : QString();
    }
    void open(const FeedbackReport &report = Report, const QString &hint = {})
    {
        m_panel->showForm(report, hint);
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(QApplication::focusWidget() == &textView());
    }
    void type(const QString &text) const { QTest::keyClicks(&textView(), text); }
    void pressControlReturn() const { QTest::keyClick(&textView(), Qt::Key_Return, Qt::ControlModifier); }
    void pressEscape() const { QTest::keyClick(m_window.get(), Qt::Key_Escape); }
    static void click(QWidget &widget) { QTest::mouseClick(&widget, Qt::LeftButton, {}, QPoint(10, 10)); }
    void openAndSend(const QString &text)
    {
        open();
        type(text);
        click(sendButton());
        m_panel->showSending();
    }

private Q_SLOTS:
    void initTestCase() { registerFeedbackScene(); }
    void init()
    {
        m_signals.clear();
        m_window = FeedbackViewController::makeWindow();
        m_panel = std::static_pointer_cast<FeedbackViewController>(m_window->contentViewController());
        connect(m_panel.get(), &FeedbackViewController::sendRequested, this,
                [this](const QString &text, bool withLog) {
                    m_signals += u"send "_s + text + (withLog ? u" with log"_s : QString());
                });
        connect(m_panel.get(), &FeedbackViewController::stopRequested, this,
                [this] { m_signals += u"stop"_s; });
    }
    void cleanup()
    {
        m_panel.reset();
        m_window.reset();
    }

    void everythingThatIsSentIsShown()
    {
        open();
        QCOMPARE(m_window->windowTitle(), u"Send Feedback"_s);
        QCOMPARE(details(), u"version: 1.0\nqt: 6.4"_s);
        QVERIFY(child<QPlainTextEdit>("detailsView")->isReadOnly());
        auto *checkbox = child<QCheckBox>("logCheckbox");
        QVERIFY(!checkbox->isChecked());
        click(*checkbox);
        QCOMPARE(details(), u"version: 1.0\nqt: 6.4\n\none\ntwo"_s);
        type(u"Hello"_s);
        click(sendButton());
        QCOMPARE(m_signals, QStringList{u"send Hello with log"_s});
        m_window->close();
        open(); // each report starts without messages
        QVERIFY(!checkbox->isChecked());
        QCOMPARE(details(), u"version: 1.0\nqt: 6.4"_s);
        open({{}, Report.parameters, {}});
        QVERIFY(!checkbox->isVisible());
    }

    void onlyTextOfSomeLengthCanBeSent()
    {
        open();
        QVERIFY(!sendButton().isEnabled());
        pressControlReturn();
        type(u" "_s);
        QVERIFY(!sendButton().isEnabled());
        textView().setPlainText(QString(FeedbackViewController::MaxTextLength, u'x'));
        QVERIFY(sendButton().isEnabled());
        type(u"y"_s);
        QVERIFY(!sendButton().isEnabled());
        QCOMPARE(status(), u"The text is too long to be sent. Shorten it, please."_s);
        pressControlReturn();
        QVERIFY(m_signals.isEmpty());
        QTest::keyClick(&textView(), Qt::Key_Delete);
        QVERIFY(sendButton().isEnabled());
        QCOMPARE(status(), QString());
    }

    void windowIsAPanelInTheMiddleEachTime()
    {
        for (int time = 0; time < 2; ++time) {
            open();
            const QPoint off =
                m_window->geometry().center() - m_window->screen()->availableGeometry().center();
            QVERIFY(off.manhattanLength() <= 2);
            m_window->move(m_window->pos() + QPoint(40, 30));
            m_window->close();
        }
        QVERIFY(m_window->isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
        QVERIFY(m_window->isStandardButtonHidden(ui::Window::StandardButton::Zoom));
    }

    void returnIsALineAndControlReturnSends()
    {
        open();
        type(u"a"_s);
        QTest::keyClick(&textView(), Qt::Key_Return);
        type(u"b"_s);
        QVERIFY(m_signals.isEmpty());
        pressControlReturn();
        QCOMPARE(m_signals, QStringList{u"send a\nb"_s});
    }

    void oneReportIsSentAtATime()
    {
        openAndSend(u"Hello"_s);
        QVERIFY(!sendButton().isEnabled());
        QVERIFY(!textView().isEnabled());
        QVERIFY(child<BusyIndicator>("busyIndicator")->isVisible());
        QCOMPARE(status(), u"Sending…"_s);
        click(sendButton());
        QTest::keyClick(m_window.get(), Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(m_signals.size(), 1);
    }

    void cancellingStopsTheTransferAndKeepsTheText()
    {
        openAndSend(u"Hello"_s);
        pressEscape();
        QCOMPARE(m_signals, (QStringList{u"send Hello"_s, u"stop"_s}));
        QVERIFY(m_window->isVisible());
        QCOMPARE(status(), u"The report was not sent."_s);
        QCOMPARE(textView().toPlainText(), u"Hello"_s);
        QVERIFY(sendButton().isEnabled());
        pressEscape();
        QVERIFY(!m_window->isVisible());
    }

    void closingContinuesTheTransfer()
    {
        openAndSend(u"Hello"_s);
        m_window->close();
        QCOMPARE(m_signals, QStringList{u"send Hello"_s});
        m_panel->showSent();
        QVERIFY(!m_window->isVisible());
        open();
        QCOMPARE(textView().toPlainText(), QString());
        QCOMPARE(status(), QString());
        QVERIFY(textView().isEnabled());
    }

    void failureIsSaidAndTheTextStays()
    {
        openAndSend(u"Hello"_s);
        m_panel->showFailure(u"No <b>way</b>."_s);
        QCOMPARE(status(), u"No <b>way</b>."_s);
        QCOMPARE(child<QLabel>("statusLabel")->textFormat(), Qt::PlainText);
        QVERIFY(sendButton().isEnabled());
        QTRY_VERIFY(QApplication::focusWidget() == &textView());
        m_window->close();
        open();
        QCOMPARE(textView().toPlainText(), u"Hello"_s);
    }

    void sentReportCanOnlyBeClosed()
    {
        openAndSend(u"Hello"_s);
        m_panel->showSent();
        QCOMPARE(status(), u"Thank you. Your report was sent."_s);
        QVERIFY(!sendButton().isVisible());
        auto *close = child<QPushButton>("closeButton");
        QTRY_VERIFY(QApplication::focusWidget() == close);
        QTest::keyClick(close, Qt::Key_Space);
        QVERIFY(!m_window->isVisible());
    }

    void keptReportIsFilledIn()
    {
        open({u"From before"_s, {}, {}}, u"Could not be sent."_s);
        QCOMPARE(textView().toPlainText(), u"From before"_s);
        const auto *hint = child<QLabel>("hintLabel");
        QCOMPARE(hint->text(), u"Could not be sent."_s);
        QVERIFY(hint->isVisible());
        QVERIFY(sendButton().isEnabled());
        m_panel->showSent();
        QVERIFY(!hint->isVisible());
        open();
        QVERIFY(!hint->isVisible());
    }

    void tabLeavesTheTextAndEverythingHasAName()
    {
        open();
        type(u"Hello"_s);
        for (const char *next : {"logCheckbox", "sendButton", "cancelButton", "detailsView"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QTRY_VERIFY(QApplication::focusWidget() == child<QWidget>(next));
        }
        QCOMPARE(textView().toPlainText(), u"Hello"_s);
        QCOMPARE(textView().accessibleName(), u"What would you like to tell us?"_s);
        QCOMPARE(child<QPlainTextEdit>("detailsView")->accessibleName(), u"What is sent with it"_s);
        for (const char *name : {"sendButton", "cancelButton", "closeButton", "logCheckbox"})
            QVERIFY2(!child<QAbstractButton>(name)->text().isEmpty(), name);
    }
};

PLOVENDIX_GUI_TEST(FeedbackViewControllerTest)
#include "FeedbackViewControllerTest.moc"
