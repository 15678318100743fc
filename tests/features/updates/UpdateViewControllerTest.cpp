#include <base/Bundle.h>
#include <features/updates/UpdateViewController.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/BusyIndicator.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using Arrival = UpdateViewController::Arrival;

namespace
{
const UpdateOffer Offer{u"1.6"_s, u"1.5"_s, u"New:\n• <b>everything</b>"_s, QUrl(u"https://get.example/"_s)};
} // namespace

/// The update window, used as a person does.
class UpdateViewControllerTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<UpdateViewController> m_panel;
    QStringList m_signals;

    template <class Type>
    Type *child(const char *name) const
    {
        return m_window->findChild<Type *>(QString::fromLatin1(name));
    }
    QString text(const char *label) const { return child<QLabel>(label)->text(); }
    QStringList visibleButtons() const
    {
        QStringList texts;
        for (const char *name : {"skipButton", "laterButton", "cancelButton", "okButton", "getButton"}) {
            if (const auto *button = child<QPushButton>(name); button->isVisible())
                texts += button->text();
        }
        return texts;
    }
    void waitForFocus(const char *name) const
    {
        QTRY_VERIFY(QApplication::focusWidget() == child<QWidget>(name));
    }
    static void pressInFocus(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void showOffer(const UpdateOffer &offer = Offer)
    {
        m_panel->showOffer(offer, Arrival::Asked);
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        waitForFocus("getButton");
    }

private Q_SLOTS:
    void initTestCase() { registerUpdateScene(); }
    void init()
    {
        m_signals.clear();
        m_window = UpdateViewController::makeWindow();
        m_panel = std::static_pointer_cast<UpdateViewController>(m_window->contentViewController());
        connect(m_panel.get(), &UpdateViewController::getRequested, this, [this] { m_signals += u"get"_s; });
        connect(m_panel.get(), &UpdateViewController::skipRequested, this,
                [this] { m_signals += u"skip"_s; });
        connect(m_panel.get(), &UpdateViewController::closed, this, [this] { m_signals += u"closed"_s; });
    }
    void cleanup()
    {
        m_panel.reset();
        m_window.reset();
        Bundle::main().setPreferredLocalizations({});
    }

    void windowIsAFixedPanelInTheMiddleEachTime()
    {
        for (int time = 0; time < 2; ++time) {
            m_panel->showUpToDate(u"1.5"_s);
            QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
            const QPoint off =
                m_window->geometry().center() - m_window->screen()->availableGeometry().center();
            QVERIFY(off.manhattanLength() <= 2);
            m_window->move(m_window->pos() + QPoint(40, 30));
            m_window->close();
        }
        QVERIFY(!m_window->isResizable());
        QVERIFY(m_window->isStandardButtonHidden(ui::Window::StandardButton::Miniaturize));
        QVERIFY(m_window->isStandardButtonHidden(ui::Window::StandardButton::Zoom));
        QCOMPARE(m_window->windowTitle(), u"Software Update"_s);
    }

    void checkCanBeCancelled()
    {
        m_panel->showChecking();
        QCOMPARE(text("headlineLabel"), u"Checking for updates…"_s);
        QVERIFY(!child<QLabel>("explanationLabel")->isVisible());
        QVERIFY(child<BusyIndicator>("busyIndicator")->isVisible());
        QCOMPARE(visibleButtons(), QStringList{u"Cancel"_s});
        waitForFocus("cancelButton");
        pressInFocus(Qt::Key_Return);
        QVERIFY(!m_window->isVisible());
        QCOMPARE(m_signals, QStringList{u"closed"_s});
    }

    void resultIsConfirmedByReturn()
    {
        m_panel->showUpToDate(u"1.5"_s);
        QCOMPARE(text("headlineLabel"), u"You are up to date"_s);
        QCOMPARE(text("explanationLabel"), u"Plovendix 1.5 is the newest version."_s);
        QVERIFY(!child<BusyIndicator>("busyIndicator")->isVisible());
        QCOMPARE(visibleButtons(), QStringList{u"OK"_s});
        waitForFocus("okButton");
        pressInFocus(Qt::Key_Return);
        QVERIFY(!m_window->isVisible());
    }

    void offerShowsItsNotesAsPlainText()
    {
        showOffer();
        QCOMPARE(text("explanationLabel"),
                 u"Plovendix 1.6 is available; you have 1.5. It is signed by the maker."_s);
        const auto *notes = child<QPlainTextEdit>("notesView");
        QCOMPARE(notes->toPlainText(), Offer.notes);
        QVERIFY(notes->isReadOnly());
        QCOMPARE(notes->accessibleName(), u"What is new"_s);
        QCOMPARE(visibleButtons(),
                 (QStringList{u"Skip This Version"_s, u"Remind Me Later"_s, u"Get the Update"_s}));
        QCOMPARE(m_window->contentSize(), QSize(500, 440));
        showOffer({u"%2$@"_s, u"<i>1.5</i>"_s, {}, {}});
        QVERIFY(!notes->isVisible());
        QCOMPARE(text("explanationLabel"),
                 u"Plovendix %2$@ is available; you have <i>1.5</i>. It is signed by the maker."_s);
        for (const char *label : {"explanationLabel", "headlineLabel"})
            QCOMPARE(child<QLabel>(label)->textFormat(), Qt::PlainText);
        m_panel->showChecking();
        QVERIFY(!notes->isVisible());
    }

    void everyButtonAnswers_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("answer");
        QTest::newRow("get") << QByteArray("getButton") << u"get"_s;
        QTest::newRow("skip") << QByteArray("skipButton") << u"skip"_s;
        QTest::newRow("later") << QByteArray("laterButton") << u"closed"_s;
    }
    void everyButtonAnswers()
    {
        QFETCH(const QByteArray, button);
        QFETCH(const QString, answer);
        showOffer();
        QTest::mouseClick(child<QPushButton>(button.constData()), Qt::LeftButton);
        QCOMPARE(m_signals, QStringList{answer});
        QCOMPARE(m_window->isVisible(), answer != u"closed"_s);
    }

    void returnPressesTheFocusedButtonElseTheDefault()
    {
        showOffer();
        pressInFocus(Qt::Key_Return);
        child<QPlainTextEdit>("notesView")->setFocus();
        pressInFocus(Qt::Key_Enter, Qt::KeypadModifier);
        child<QPushButton>("skipButton")->setFocus();
        pressInFocus(Qt::Key_Return);
        QCOMPARE(m_signals, (QStringList{u"get"_s, u"get"_s, u"skip"_s}));
    }

    void tabReachesEverything()
    {
        showOffer();
        for (const char *next : {"laterButton", "skipButton", "notesView"}) {
            pressInFocus(Qt::Key_Tab);
            waitForFocus(next);
        }
        pressInFocus(Qt::Key_Backtab);
        waitForFocus("skipButton");
    }

    void escapeClosesFromAnyState()
    {
        const QList<std::function<void()>> states{[this] { m_panel->showChecking(); },
                                                  [this] { m_panel->showFailure(u"No."_s); },
                                                  [this] { showOffer(); }};
        for (const auto &show : states) {
            m_signals.clear();
            show();
            QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
            QTest::keyClick(m_window.get(), Qt::Key_Escape);
            QVERIFY(!m_window->isVisible());
            QCOMPARE(m_signals, QStringList{u"closed"_s});
        }
    }

    void textsFitInEveryLanguage_data()
    {
        QTest::addColumn<QString>("language");
        for (const char *language : {"en", "de", "fr", "es", "pt-BR", "ja"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }
    void textsFitInEveryLanguage()
    {
        QFETCH(const QString, language);
        Bundle::main().setPreferredLocalizations({language});
        init();
        m_panel->showFailure(Bundle::main().localizedString(
            u"A new version is announced, but it is not signed by the maker of Plovendix. It is not offered "
            "here, and should not be trusted elsewhere either."_s));
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        const auto *label = child<QLabel>("explanationLabel");
        QVERIFY(label->height() >= label->heightForWidth(label->width()));
        showOffer();
        for (const char *name : {"skipButton", "laterButton", "getButton"}) {
            const auto *button = child<QPushButton>(name);
            QTRY_VERIFY2(button->width() >= button->minimumSizeHint().width(), name);
        }
        QVERIFY(m_window->contentSize().width() < 700);
    }
};

PLOVENDIX_GUI_TEST(UpdateViewControllerTest)
#include "UpdateViewControllerTest.moc"
