#include "AlertAnswerer.h"
#include "GermanTexts.h"

#include <base/MainQueue.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/window/ErrorAlert.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QScreen>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{
base::Error errorSaying(const QString &text)
{
    return base::Error{QString(), 123, text};
}
} // namespace

class ErrorAlertTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void alertShowsTheDescriptionAsPlainText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("a sentence") << u"The service is not available."_s;
        QTest::newRow("markup") << u"<b>Bold</b> <img src='file:///x'> & so on"_s;
        QTest::newRow("lines") << u"The file could not be moved.\nIt is there already."_s;
        QTest::newRow("nothing") << QString();
        QTest::newRow("a long path") << u"/home/someone/Videos/"_s + u"folder/"_s.repeated(40) + u"a.srt"_s;
        QTest::newRow("other scripts") << u"ошибка сети \U0001F600 שגיאה"_s;
    }
    void alertShowsTheDescriptionAsPlainText()
    {
        QFETCH(QString, text);
        QString shown;
        Qt::TextFormat format = Qt::RichText;
        AlertAnswerer person([&](QMessageBox &alert) {
            shown = alert.text();
            format = alert.textFormat();
            alert.close();
        });
        showErrorAlert(errorSaying(text), nullptr);
        QCOMPARE(person.alertsSeen(), 1);
        QCOMPARE(shown, text);
        QCOMPARE(format, Qt::PlainText);
    }

    void endlessTextsAreBounded_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("one word") << QString(100'000, u'x');
        QTest::newRow("many words") << u"word "_s.repeated(50'000);
        QTest::newRow("many lines") << u"line\n"_s.repeated(5'000);
        QTest::newRow("an emoji at the cut") << QString(1499, u'x') + u"\U0001F600 and more"_s;
    }
    void endlessTextsAreBounded()
    {
        QFETCH(QString, text);
        QString shown;
        QSize size;
        AlertAnswerer person([&](QMessageBox &alert) {
            shown = alert.text();
            size = alert.size();
            alert.close();
        });
        showErrorAlert(errorSaying(text), nullptr);
        QVERIFY(shown.endsWith(QChar(0x2026)));
        QVERIFY(shown.isValidUtf16());
        QVERIFY(shown.size() < 1600);
        QVERIFY(shown.count(u'\n') < 20);
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        QVERIFY2(size.width() <= screen.width() && size.height() <= screen.height(),
                 qPrintable(u"%1 x %2"_s.arg(size.width()).arg(size.height())));
    }

    void alertIsModalTitledAndAnAlertForAssistiveTools()
    {
        QString title;
        Qt::WindowModality modality = Qt::NonModal;
        QAccessible::Role role = QAccessible::NoRole;
        qsizetype buttons = 0;
        AlertAnswerer person([&](QMessageBox &alert) {
            title = alert.windowTitle();
            modality = alert.windowModality();
            role = QAccessible::queryAccessibleInterface(&alert)->role();
            buttons = alert.buttons().size();
            alert.close();
        });
        showErrorAlert(errorSaying(u"Failed"_s), nullptr);
        QCOMPARE(title, u"Plovendix"_s);
        QCOMPARE(modality, Qt::ApplicationModal);
        QCOMPARE(role, QAccessible::AlertMessage);
        QCOMPARE(buttons, 1);
    }

    void buttonSpeaksThePersonsLanguage()
    {
        const GermanTexts german(m_sandbox, {{u"OK"_s, u"Verstanden"_s}});
        QString button;
        AlertAnswerer person([&](QMessageBox &alert) {
            button = alert.buttons().constFirst()->text();
            alert.close();
        });
        showErrorAlert(errorSaying(u"Failed"_s), nullptr);
        QCOMPARE(button, u"Verstanden"_s);
    }

    void personDismissesTheAlert_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("by Return") << int(Qt::Key_Return);
        QTest::newRow("by Escape") << int(Qt::Key_Escape);
        QTest::newRow("by a click") << 0;
    }
    void personDismissesTheAlert()
    {
        QFETCH(int, key);
        QPointer<QMessageBox> seen;
        AlertAnswerer person([&](QMessageBox &alert) {
            seen = &alert;
            if (key)
                QTest::keyClick(&alert, Qt::Key(key));
            else
                QTest::mouseClick(alert.buttons().constFirst(), Qt::LeftButton);
        });
        showErrorAlert(errorSaying(u"Failed"_s), nullptr);
        QCOMPARE(person.alertsSeen(), 1);
        QTRY_VERIFY(!seen);
    }

    void windowGoingMeanwhileEndsTheAlert()
    {
        auto window = std::make_unique<QWidget>();
        window->show();
        AlertAnswerer person([&](QMessageBox &) { window.reset(); });
        showErrorAlert(errorSaying(u"Failed"_s), window.get());
        QCOMPARE(person.alertsSeen(), 1);
        QVERIFY(!window);
    }

    void programQuittingMeanwhileEndsTheAlert_data()
    {
        QTest::addColumn<bool>("byClosingEverything");
        QTest::newRow("quit") << true;
        QTest::newRow("exit") << false;
    }
    void programQuittingMeanwhileEndsTheAlert()
    {
        QFETCH(bool, byClosingEverything);
        ui::Window window;
        window.show();
        bool returned = false;
        AlertAnswerer person([&](QMessageBox &) {
            if (byClosingEverything)
                QApplication::quit();
            else
                QCoreApplication::exit();
        });
        MainQueue::shared().async([&] {
            showErrorAlert(errorSaying(u"Failed"_s), &window);
            returned = true;
        });
        // Where the alert did not return, this would not either.
        QApplication::exec();
        QVERIFY(returned);
        QCOMPARE(person.alertsSeen(), 1);
    }

    void blocksWaitWhileAnAlertOfABlockIsUp()
    {
        QStringList order;
        AlertAnswerer person([&](QMessageBox &alert) {
            // A turn later still, so that a block which did not wait has had its chance.
            QTimer::singleShot(0, &alert, [&alert, &order] {
                order += u"answered"_s;
                alert.close();
            });
        });
        MainQueue::shared().async([&] {
            showErrorAlert(errorSaying(u"Failed"_s), nullptr);
            order += u"returned"_s;
        });
        MainQueue::shared().async([&] { order += u"next block"_s; });
        QTRY_COMPARE(order, QStringList({u"answered"_s, u"returned"_s, u"next block"_s}));
    }

    void controllerPresentsOverItsWindow()
    {
        ui::Window window;
        const auto controller = ViewController::make<ViewController>();
        window.setContentViewController(controller);
        QWidget *parent = nullptr;
        AlertAnswerer person([&](QMessageBox &alert) {
            parent = alert.parentWidget();
            alert.close();
        });
        QVERIFY(!controller->presentError(errorSaying(u"Failed"_s)));
        QCOMPARE(person.alertsSeen(), 1);
        QCOMPARE(parent, &window);
    }

    void controllerWithoutAViewPresentsToo()
    {
        const auto controller = ViewController::make<ViewController>();
        AlertAnswerer person([](QMessageBox &alert) { alert.close(); });
        QVERIFY(!controller->presentError(errorSaying(u"Failed"_s)));
        QCOMPARE(person.alertsSeen(), 1);
        QVERIFY(!controller->isViewLoaded());
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(ErrorAlertTest)
#include "ErrorAlertTest.moc"
