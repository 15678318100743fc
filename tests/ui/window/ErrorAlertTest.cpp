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
    void showsTheDescriptionAsPlainTextAsFarAsItFits_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("fits");
        QTest::newRow("a sentence") << u"The service is not available."_s << true;
        QTest::newRow("markup") << u"<b>Bold</b> <img src='file:///x'> & so on"_s << true;
        QTest::newRow("lines") << u"The file could not be moved.\nIt is there already."_s << true;
        QTest::newRow("nothing") << QString() << true;
        QTest::newRow("a long path") << QString(u"/home/someone/Videos/"_s + u"folder/"_s.repeated(40) +
                                                u"a.srt"_s)
                                     << true;
        QTest::newRow("other scripts") << u"ошибка сети \U0001F600 שגיאה"_s << true;
        QTest::newRow("one word") << QString(100'000, u'x') << false;
        QTest::newRow("many words") << u"word "_s.repeated(50'000) << false;
        QTest::newRow("many lines") << u"line\n"_s.repeated(5'000) << false;
        QTest::newRow("an emoji at the cut")
            << QString(QString(1499, u'x') + u"\U0001F600 and more"_s) << false;
    }
    void showsTheDescriptionAsPlainTextAsFarAsItFits()
    {
        QFETCH(QString, text);
        QFETCH(bool, fits);
        QString shown;
        QSize size;
        Qt::TextFormat format = Qt::RichText;
        AlertAnswerer person([&](QMessageBox &alert) {
            shown = alert.text();
            size = alert.size();
            format = alert.textFormat();
            alert.close();
        });
        showErrorAlert(errorSaying(text), nullptr);
        QCOMPARE(person.alertsSeen(), 1);
        QCOMPARE(format, Qt::PlainText);
        QCOMPARE(shown == text, fits);
        QCOMPARE(shown.endsWith(QChar(0x2026)), !fits);
        QVERIFY(shown.isValidUtf16() && shown.size() < 1600 && shown.count(u'\n') < 20);
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        QVERIFY2(size.width() <= screen.width() && size.height() <= screen.height(),
                 qPrintable(u"%1 x %2"_s.arg(size.width()).arg(size.height())));
    }

    void isModalTitledAndAnAlertWithOneButton()
    {
        const GermanTexts german(m_sandbox, {{u"OK"_s, u"Verstanden"_s}});
        AlertAnswerer person([&](QMessageBox &alert) {
            QCOMPARE(alert.windowTitle(), u"Plovendix"_s);
            QCOMPARE(alert.windowModality(), Qt::ApplicationModal);
            QCOMPARE(QAccessible::queryAccessibleInterface(&alert)->role(), QAccessible::AlertMessage);
            QCOMPARE(alert.buttons().size(), 1);
            QCOMPARE(alert.buttons().constFirst()->text(), u"Verstanden"_s);
            alert.close();
        });
        showErrorAlert(errorSaying(u"Failed"_s), nullptr);
        QCOMPARE(person.alertsSeen(), 1);
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

    void windowDestroyedMeanwhileEndsTheAlert()
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
        QApplication::exec(); // would not return either
        QVERIFY(returned);
        QCOMPARE(person.alertsSeen(), 1);
    }

    void controllerPresentsOverItsWindowOrWithout()
    {
        QList<QWidget *> parents;
        AlertAnswerer person([&](QMessageBox &alert) {
            parents += alert.parentWidget();
            alert.close();
        });
        const auto controller = ViewController::make<ViewController>();
        QVERIFY(!controller->presentError(errorSaying(u"Failed"_s)));
        QVERIFY(!controller->isViewLoaded());
        ui::Window window;
        window.setContentViewController(controller);
        QVERIFY(!controller->presentError(errorSaying(u"Failed"_s)));
        QCOMPARE(parents, (QList<QWidget *>{nullptr, &window}));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(ErrorAlertTest)
#include "ErrorAlertTest.moc"
