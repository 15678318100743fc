
#include <base/Bundle.h>
#include <features/updates/UpdateWindowController.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/style/BusyIndicator.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class NotingUpdater final : public UpdatePresenting::Answering
{
public:
    QStringList answers;
    void getUpdate() override { answers += u"get"_s; }
    void skipVersion() override { answers += u"skip"_s; }
    void windowClosed() override { answers += u"closed"_s; }
};

const UpdateOffer Offer{u"1.6"_s, u"1.5"_s, u"New:\n• <b>everything</b>"_s, QUrl(u"https://get.example/"_s)};
} // namespace

/// The update window, used as a person does.
class UpdateWindowTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    NotingUpdater m_updater;
    std::unique_ptr<UpdateWindowController> m_controller;

    QList<bool> m_quietShows; // whether each showing asked for no focus

    bool eventFilter(QObject *shown, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            m_quietShows += window().testAttribute(Qt::WA_ShowWithoutActivating);
        return QObject::eventFilter(shown, event);
    }
    ui::Window &window() const { return *m_controller->window(); }
    template <class Type>
    Type *child(const char *name) const
    {
        return window().findChild<Type *>(QString::fromLatin1(name));
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
    void expose() const { QVERIFY(QTest::qWaitForWindowExposed(&window())); }
    void waitForFocus(const char *name) const
    {
        QTRY_VERIFY(QApplication::focusWidget() == child<QWidget>(name));
    }

private Q_SLOTS:
    void initTestCase() { registerUpdateScene(); }
    void init()
    {
        m_updater.answers.clear();
        m_controller = std::make_unique<UpdateWindowController>();
        m_controller->setAnswering(&m_updater);
    }
    void cleanup()
    {
        m_controller.reset();
        Bundle::main().setPreferredLocalizations({});
    }

    void nothingIsShownAtFirst()
    {
        QVERIFY(!m_controller->isShown());
        m_controller->dismiss();
        QVERIFY(ui::Window::openWindows().isEmpty());
    }

    void itComesUpInTheMiddleEachTime()
    {
        for (int time = 0; time < 2; ++time) {
            m_controller->showUpToDate(u"1.5"_s);
            expose();
            const QPoint off = window().geometry().center() - window().screen()->availableGeometry().center();
            QVERIFY(off.manhattanLength() <= 2);
            window().move(window().pos() + QPoint(40, 30));
            window().close();
        }
    }

    void itsSizeIsNotAPersonsToChoose()
    {
        m_controller->showChecking();
        expose();
        QVERIFY(!window().isResizable());
    }

    void aCheckUnderWayTurnsAndCanBeCancelled()
    {
        m_controller->showChecking();
        expose();
        QVERIFY(m_controller->isShown());
        QCOMPARE(window().windowTitle(), u"Software Update"_s);
        QCOMPARE(text("headlineLabel"), u"Checking for updates…"_s);
        QVERIFY(child<BusyIndicator>("busyIndicator")->isVisible());
        QCOMPARE(visibleButtons(), QStringList{u"Cancel"_s});
        QTest::mouseClick(child<QPushButton>("cancelButton"), Qt::LeftButton);
        QCOMPARE(m_updater.answers, QStringList{u"closed"_s});
        QVERIFY(!m_controller->isShown());
    }

    void upToDateIsSaid()
    {
        m_controller->showChecking();
        expose();
        m_controller->showUpToDate(u"1.5"_s);
        QCOMPARE(text("headlineLabel"), u"You are up to date"_s);
        QCOMPARE(text("explanationLabel"), u"Plovendix 1.5 is the newest version."_s);
        QVERIFY(!child<BusyIndicator>("busyIndicator")->isVisible());
        QCOMPARE(visibleButtons(), QStringList{u"OK"_s});
        waitForFocus("okButton");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(!m_controller->isShown());
    }

    void anOfferShowsItsNotesAsPlainText()
    {
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        expose();
        QCOMPARE(text("explanationLabel"),
                 u"Plovendix 1.6 is available; you have 1.5. It is signed by the maker."_s);
        const auto *notes = child<QPlainTextEdit>("notesView");
        QCOMPARE(notes->toPlainText(), Offer.notes);
        QVERIFY(notes->isReadOnly());
        QCOMPARE(notes->accessibleName(), u"What is new"_s);
        QCOMPARE(visibleButtons(),
                 (QStringList{u"Skip This Version"_s, u"Remind Me Later"_s, u"Get the Update"_s}));
        QCOMPARE(window().contentSize(), QSize(500, 440));
    }

    void textsOfTheServerAreNeverMarkup()
    {
        m_controller->showFailure(u"<b>bold</b> <img src='x'>"_s);
        expose();
        QCOMPARE(child<QLabel>("explanationLabel")->textFormat(), Qt::PlainText);
        QCOMPARE(child<QLabel>("headlineLabel")->textFormat(), Qt::PlainText);
        m_controller->showOffer({u"%2$@"_s, u"<i>1.5</i>"_s, {}, {}}, UpdatePresenting::Arrival::Asked);
        QCOMPARE(text("explanationLabel"),
                 u"Plovendix %2$@ is available; you have <i>1.5</i>. It is signed by the maker."_s);
    }

    void withoutNotesThereIsNoBox()
    {
        UpdateOffer offer = Offer;
        offer.notes.clear();
        m_controller->showOffer(offer, UpdatePresenting::Arrival::Asked);
        expose();
        QVERIFY(!child<QPlainTextEdit>("notesView")->isVisible());
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        QVERIFY(child<QPlainTextEdit>("notesView")->isVisible());
    }

    void everyButtonAnswers_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("closes");
        QTest::newRow("get") << QByteArray("getButton") << u"get"_s << false;
        QTest::newRow("skip") << QByteArray("skipButton") << u"skip"_s << false;
        QTest::newRow("later") << QByteArray("laterButton") << u"closed"_s << true;
    }
    void everyButtonAnswers()
    {
        QFETCH(const QByteArray, button);
        QFETCH(const QString, answer);
        QFETCH(const bool, closes);
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        expose();
        QTest::mouseClick(child<QPushButton>(button.constData()), Qt::LeftButton);
        QCOMPARE(m_updater.answers, QStringList{answer});
        QCOMPARE(m_controller->isShown(), !closes);
    }

    void returnGetsTheUpdate()
    {
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        expose();
        waitForFocus("getButton");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(m_updater.answers, QStringList{u"get"_s});
        child<QPlainTextEdit>("notesView")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(m_updater.answers, (QStringList{u"get"_s, u"get"_s}));
    }

    void returnOnAnotherButtonPressesThat()
    {
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        expose();
        child<QPushButton>("skipButton")->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(m_updater.answers, QStringList{u"skip"_s});
    }

    void tabReachesEverything()
    {
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        expose();
        waitForFocus("getButton");
        for (const char *next : {"laterButton", "skipButton", "notesView"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            waitForFocus(next);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        waitForFocus("skipButton");
    }

    void escapeCloses_data()
    {
        QTest::addColumn<int>("state");
        for (int state = 0; state < 4; ++state)
            QTest::addRow("state %d", state) << state;
    }
    void escapeCloses()
    {
        QFETCH(const int, state);
        if (state == 0)
            m_controller->showChecking();
        else if (state == 1)
            m_controller->showUpToDate(u"1.5"_s);
        else if (state == 2)
            m_controller->showFailure(u"No."_s);
        else
            m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        expose();
        QTest::keyClick(&window(), Qt::Key_Escape);
        QVERIFY(!m_controller->isShown());
        QCOMPARE(m_updater.answers, QStringList{u"closed"_s});
    }

    void beingSentAwayIsNoAnswer()
    {
        m_controller->showChecking();
        expose();
        m_controller->dismiss();
        QVERIFY(!m_controller->isShown());
        QVERIFY(m_updater.answers.isEmpty());
        m_controller->showUpToDate(u"1.5"_s);
        QVERIFY(m_controller->isShown());
    }

    void whoIsGoneIsToldNothing()
    {
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        expose();
        m_controller->setAnswering(nullptr);
        QTest::mouseClick(child<QPushButton>("getButton"), Qt::LeftButton);
        window().close();
        QVERIFY(m_updater.answers.isEmpty());
    }

    void whatComesByItselfTakesNoFocus()
    {
        // The platform of these tests activates whatever is shown; what it is asked for is seen all the same.
        m_controller->window()->installEventFilter(this);
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::ByItself);
        expose();
        m_controller->dismiss();
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        QCOMPARE(m_quietShows, (QList<bool>{true, false}));
    }

    void aLongSentenceFits_data()
    {
        QTest::addColumn<QString>("language");
        for (const QString &language : {u"en"_s, u"de"_s, u"fr"_s, u"es"_s, u"pt-BR"_s, u"ja"_s})
            QTest::newRow(qPrintable(language)) << language;
    }
    void aLongSentenceFits()
    {
        QFETCH(const QString, language);
        Bundle::main().setPreferredLocalizations({language});
        const QString longest = Bundle::main().localizedString(
            u"A new version is announced, but it is not signed by the maker of Plovendix. It is not offered "
            "here, and should not be trusted elsewhere either."_s);
        m_controller->showFailure(longest);
        expose();
        const auto *label = child<QLabel>("explanationLabel");
        QVERIFY(label->height() >= label->heightForWidth(label->width()));
        m_controller->showOffer(Offer, UpdatePresenting::Arrival::Asked);
        for (const char *name : {"skipButton", "laterButton", "getButton"}) {
            const auto *button = child<QPushButton>(name);
            QTRY_VERIFY2(button->width() >= button->minimumSizeHint().width(), name);
        }
        QVERIFY(window().contentSize().width() < 700);
    }
};

PLOVENDIX_GUI_TEST(UpdateWindowTest)
#include "UpdateWindowTest.moc"
