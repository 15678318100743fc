#include <features/feedback/FeedbackViewController.h>
#include <features/feedback/FeedbackWindowController.h>

#include <base/Bundle.h>
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
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class NotingReporter final : public FeedbackPresenting::Answering
{
public:
    QStringList answers;
    void send(const QString &text, bool withLog) override
    {
        answers += u"send "_s + text + (withLog ? u" with log"_s : QString());
    }
    void stopSending() override { answers += u"stop"_s; }
};

const FeedbackForm Form{{}, {}, {{u"version"_s, u"1.0"_s}, {u"qt"_s, u"6.4"_s}}, {u"one"_s, u"two"_s}};
} // namespace

/// The feedback window, used as a person does.
class FeedbackWindowTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    NotingReporter m_reporter;
    std::unique_ptr<FeedbackWindowController> m_controller;

    ui::Window &window() const { return *m_controller->window(); }
    template <class Type>
    Type *child(const char *name) const
    {
        return window().findChild<Type *>(QString::fromLatin1(name));
    }
    QPlainTextEdit &textView() const { return *child<QPlainTextEdit>("textView"); }
    QPushButton &sendButton() const { return *child<QPushButton>("sendButton"); }
    QString details() const { return child<QPlainTextEdit>("detailsView")->toPlainText(); }
    QString status() const
    {
        const auto *label = child<QLabel>("statusLabel");
        return label->isVisible() ? label->text() : QString();
    }
    void open(const FeedbackForm &form = Form)
    {
        m_controller->showForm(form);
        QVERIFY(QTest::qWaitForWindowExposed(&window()));
        QTRY_VERIFY(QApplication::focusWidget() == &textView());
    }
    void type(const QString &text) const { QTest::keyClicks(&textView(), text); }
    static void click(QWidget &widget) { QTest::mouseClick(&widget, Qt::LeftButton, {}, QPoint(10, 10)); }

private Q_SLOTS:
    void initTestCase() { registerFeedbackScene(); }
    void init()
    {
        m_reporter.answers.clear();
        m_controller = std::make_unique<FeedbackWindowController>();
        m_controller->setAnswering(&m_reporter);
    }
    void cleanup() { m_controller.reset(); }

    void whatIsSentAlongIsShown()
    {
        open();
        QCOMPARE(window().windowTitle(), u"Send Feedback"_s);
        QCOMPARE(details(), u"version: 1.0\nqt: 6.4"_s);
        QVERIFY(child<QPlainTextEdit>("detailsView")->isReadOnly());
        auto *checkbox = child<QCheckBox>("logCheckbox");
        QVERIFY(!checkbox->isChecked());
        click(*checkbox);
        QCOMPARE(details(), u"version: 1.0\nqt: 6.4\n\none\ntwo"_s);
        click(*checkbox);
        QCOMPARE(details(), u"version: 1.0\nqt: 6.4"_s);
    }

    void withoutMessagesThereIsNothingToInclude()
    {
        FeedbackForm form = Form;
        form.log.clear();
        open(form);
        QVERIFY(!child<QCheckBox>("logCheckbox")->isVisible());
    }

    void onlyATextCanBeSent()
    {
        open();
        QVERIFY(!sendButton().isEnabled());
        QTest::keyClick(&textView(), Qt::Key_Return, Qt::ControlModifier);
        type(u" "_s);
        QVERIFY(!sendButton().isEnabled());
        type(u"Hello"_s);
        QVERIFY(sendButton().isEnabled());
        QVERIFY(m_reporter.answers.isEmpty());
        click(sendButton());
        QCOMPARE(m_reporter.answers, QStringList{u"send  Hello"_s});
    }

    void messagesGoAlongWhenChosen()
    {
        open();
        type(u"Hello"_s);
        click(*child<QCheckBox>("logCheckbox"));
        click(sendButton());
        QCOMPARE(m_reporter.answers, QStringList{u"send Hello with log"_s});
    }

    void messagesAreChosenAnewForEachReport()
    {
        open();
        click(*child<QCheckBox>("logCheckbox"));
        window().close();
        open();
        QVERIFY(!child<QCheckBox>("logCheckbox")->isChecked());
        QCOMPARE(details(), u"version: 1.0\nqt: 6.4"_s);
    }

    void itComesUpInTheMiddleEachTime()
    {
        for (int time = 0; time < 2; ++time) {
            open();
            const QPoint off = window().geometry().center() - window().screen()->availableGeometry().center();
            QVERIFY(off.manhattanLength() <= 2);
            window().move(window().pos() + QPoint(40, 30));
            window().close();
        }
    }

    void returnIsALineAndControlReturnSends()
    {
        open();
        type(u"a"_s);
        QTest::keyClick(&textView(), Qt::Key_Return);
        type(u"b"_s);
        QVERIFY(m_reporter.answers.isEmpty());
        QTest::keyClick(&textView(), Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(m_reporter.answers, QStringList{u"send a\nb"_s});
    }

    void whileOneIsSentNoSecondCanBe()
    {
        open();
        type(u"Hello"_s);
        click(sendButton());
        m_controller->showSending();
        QVERIFY(!sendButton().isEnabled());
        QVERIFY(!textView().isEnabled());
        QVERIFY(child<BusyIndicator>("busyIndicator")->isVisible());
        QCOMPARE(status(), u"Sending…"_s);
        click(sendButton());
        QTest::keyClick(&window(), Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(m_reporter.answers.size(), 1);
    }

    void cancellingStopsTheSendingAndKeepsTheText()
    {
        open();
        type(u"Hello"_s);
        m_controller->showSending();
        QTest::keyClick(&window(), Qt::Key_Escape);
        QCOMPARE(m_reporter.answers, QStringList{u"stop"_s});
        QVERIFY(window().isVisible());
        QCOMPARE(status(), u"The report was not sent."_s);
        QCOMPARE(textView().toPlainText(), u"Hello"_s);
        QVERIFY(sendButton().isEnabled());
        QTest::keyClick(&window(), Qt::Key_Escape);
        QVERIFY(!window().isVisible());
    }

    void closingDuringASendLetsItGoOn()
    {
        open();
        type(u"Hello"_s);
        m_controller->showSending();
        window().close();
        QVERIFY(m_reporter.answers.isEmpty());
        m_controller->showSent();
        QVERIFY(!window().isVisible());
        open();
        QCOMPARE(textView().toPlainText(), QString());
        QCOMPARE(status(), QString());
        QVERIFY(textView().isEnabled());
    }

    void aFailureIsToldAndTheTextStays()
    {
        open();
        type(u"Hello"_s);
        m_controller->showSending();
        m_controller->showFailure(u"No <b>way</b>."_s);
        QCOMPARE(status(), u"No <b>way</b>."_s);
        QCOMPARE(child<QLabel>("statusLabel")->textFormat(), Qt::PlainText);
        QCOMPARE(textView().toPlainText(), u"Hello"_s);
        QVERIFY(sendButton().isEnabled());
        QTRY_VERIFY(QApplication::focusWidget() == &textView());
    }

    void afterSendingThereIsNothingToDoButClose()
    {
        open();
        type(u"Hello"_s);
        m_controller->showSending();
        m_controller->showSent();
        QCOMPARE(status(), u"Thank you. Your report was sent."_s);
        QVERIFY(!sendButton().isVisible());
        auto *close = child<QPushButton>("closeButton");
        QTRY_VERIFY(QApplication::focusWidget() == close);
        QTest::keyClick(close, Qt::Key_Space);
        QVERIFY(!window().isVisible());
    }

    void whatWasWrittenStaysForTheNextTime()
    {
        open();
        type(u"Half a thou"_s);
        window().close();
        open();
        QCOMPARE(textView().toPlainText(), u"Half a thou"_s);
        QVERIFY(m_reporter.answers.isEmpty());
    }

    void aKeptReportIsFilledIn()
    {
        FeedbackForm form = Form;
        form.text = u"From before"_s;
        form.hint = u"Could not be sent."_s;
        open(form);
        QCOMPARE(textView().toPlainText(), u"From before"_s);
        QVERIFY(child<QLabel>("hintLabel")->isVisible());
        QVERIFY(sendButton().isEnabled());
        m_controller->showSent();
        QVERIFY(!child<QLabel>("hintLabel")->isVisible());
        window().close();
        open();
        QVERIFY(!child<QLabel>("hintLabel")->isVisible());
    }

    void aTextWithoutMeasureIsNotTaken()
    {
        open();
        textView().setPlainText(QString(FeedbackViewController::MaxTextLength, u'x'));
        QVERIFY(sendButton().isEnabled());
        type(u"y"_s);
        QVERIFY(!sendButton().isEnabled());
        QCOMPARE(status(), u"The text is too long to be sent. Shorten it, please."_s);
        QTest::keyClick(&textView(), Qt::Key_Return, Qt::ControlModifier);
        QVERIFY(m_reporter.answers.isEmpty());
        QTest::keyClick(&textView(), Qt::Key_Delete);
        QVERIFY(sendButton().isEnabled());
        QCOMPARE(status(), QString());
    }

    void tabLeavesTheTextForTheButtons()
    {
        open();
        type(u"Hello"_s);
        for (const char *next : {"logCheckbox", "sendButton", "cancelButton", "detailsView"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QTRY_VERIFY(QApplication::focusWidget() == child<QWidget>(next));
        }
        QCOMPARE(textView().toPlainText(), u"Hello"_s);
    }

    void everythingHasAName()
    {
        open();
        QCOMPARE(textView().accessibleName(), u"What would you like to tell us?"_s);
        QCOMPARE(child<QPlainTextEdit>("detailsView")->accessibleName(), u"What is sent with it"_s);
        for (const char *name : {"sendButton", "cancelButton", "closeButton", "logCheckbox"})
            QVERIFY2(!child<QAbstractButton>(name)->text().isEmpty(), name);
    }

    void whoIsGoneIsToldNothing()
    {
        open();
        type(u"Hello"_s);
        m_controller->setAnswering(nullptr);
        click(sendButton());
        m_controller->showSending();
        QTest::keyClick(&window(), Qt::Key_Escape);
        QVERIFY(m_reporter.answers.isEmpty());
    }
};

PLOVENDIX_GUI_TEST(FeedbackWindowTest)
#include "FeedbackWindowTest.moc"
