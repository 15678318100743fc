#include "ServicesPaneFixture.h"

#include <base/Bundle.h>
#include <base/Links.h>
#include <tests/support/TestMain.h>

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

using namespace Qt::StringLiterals;

/// Preferences, the catalogue's place, and the looks of the Services pane.
class PrefsServicesSettingsTest final : public QObject
{
    Q_OBJECT

private:
    static constexpr int PaneWidth = 560; // as its scene says
    static constexpr int PaneHeight = 664;

    Sandbox m_sandbox;
    std::unique_ptr<ServicesPaneFixture> m_fixture;
    int m_turn = 0;

    static UserDefaults &defaults() { return UserDefaults::standard(); }
    void open() const { m_fixture->open(); }
    template <class Type>
    Type *child(const char *name) const
    {
        return m_fixture->child<Type>(name);
    }

private Q_SLOTS:
    void initTestCase() { registerPreferencesScenes(); }
    void init() { m_fixture = std::make_unique<ServicesPaneFixture>(m_sandbox, ++m_turn); }
    void cleanup()
    {
        m_fixture.reset();
        Bundle::main().setPreferredLocalizations({});
    }

    void preferencesAreSettings_data()
    {
        QTest::addColumn<QString>("popUp");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("registered");
        QTest::newRow("hearing") << u"hearingPopUp"_s << u"SubtitleHearingImpaired"_s << u"No preference"_s;
        QTest::newRow("foreign") << u"foreignPopUp"_s << u"SubtitleForeignPartsOnly"_s << u"Avoided"_s;
        QTest::newRow("machine") << u"machinePopUp"_s << u"SubtitleMachineTranslated"_s << u"Avoided"_s;
    }
    void preferencesAreSettings()
    {
        QFETCH(const QString, popUp);
        QFETCH(const QString, key);
        open();
        auto *pane = m_fixture->window->findChild<QComboBox *>(popUp);
        QTEST(pane->currentText(), "registered");
        QTest::keyClick(pane, Qt::Key_Home);
        QCOMPARE(pane->currentText(), u"No preference"_s);
        for (const auto &[text, value] :
             {std::pair{u"Preferred"_s, u"preferred"_s}, std::pair{u"Avoided"_s, u"avoided"_s}}) {
            QTest::keyClick(pane, Qt::Key_Down);
            QCOMPARE(pane->currentText(), text);
            QCOMPARE(defaults().string(key), value);
        }
        QTest::keyClick(pane, Qt::Key_Home);
        QCOMPARE(defaults().string(key), u"neutral"_s);
    }

    void catalogueIsAPlaceWithASize()
    {
        open();
        QCOMPARE(child<QPushButton>("catalogueButton")->text(), u"~/data && more"_s);
        QCOMPARE(child<QLabel>("catalogueSizeLabel")->text(), QLocale().formattedDataSize(2'500'000));
        QCOMPARE(child<QPushButton>("catalogueButton")->toolTip(), QDir::homePath() + u"/data & more"_s);
        child<QPushButton>("catalogueButton")->click();
        QCOMPARE(m_fixture->workspace->shown,
                 QList<QUrl>{QUrl::fromLocalFile(m_fixture->accounts->place.file)});
        m_fixture->accounts->place.isOwn = false;
        m_fixture->window->hide();
        m_fixture->window->show();
        QVERIFY(child<QLabel>("catalogueSizeLabel")->text().endsWith(u", comes with the program"_s));
        child<QCheckBox>("originalBytesCheckbox")->click();
        QVERIFY(defaults().boolean(u"SubtitleKeepsOriginalBytes"_s));
    }

    void appearingBeforeTheViewIsLoadedDoesNoHarm()
    {
        const auto pane = ViewController::make<PrefsServicesViewController>();
        pane->notifyWillAppear();
        QVERIFY(!pane->isViewLoaded());
    }

    void longPathIsShortened()
    {
        m_fixture->accounts->place.file = u"/data/"_s + u"folder/"_s.repeated(50) + u"catalogue.sqlite"_s;
        open();
        const QString text = child<QPushButton>("catalogueButton")->text();
        QVERIFY(text.contains(u'…') && text.startsWith(u"/data/"_s) && text.endsWith(u"folder"_s));
        QVERIFY(m_fixture->pane->view()->minimumSizeHint().width() <= PaneWidth);
    }

    void windowStaysOnTheScreen()
    {
        open();
        const QRect room = m_fixture->window->screen()->availableGeometry();
        m_fixture->window->move(m_fixture->window->x(), room.bottom() - 100);
        m_fixture->pane->notifyDidAppear();
        const int bottom = m_fixture->window->geometry().bottom();
        QVERIFY2(bottom <= room.bottom() || m_fixture->window->y() == room.top(),
                 qPrintable(QString::number(bottom)));
        m_fixture->window->move(room.left() + 3, room.top());
        m_fixture->pane->notifyDidAppear();
        QCOMPARE(m_fixture->window->pos(), QPoint(room.left() + 3, room.top()));
    }

    void longAnswersFitInEveryLanguage_data() { textsFitInEveryLanguage_data(); }
    void longAnswersFitInEveryLanguage()
    {
        QFETCH(const QString, language);
        Bundle::main().setPreferredLocalizations({language});
        m_fixture->accounts->texts = {{Item::MetadataKey, u"films"_s}};
        open();
        m_fixture->window->setContentSize({PaneWidth, PaneHeight}); // as the preferences do
        child<QPushButton>("testButton")->click();
        const auto answer = [](const QString &key) {
            return base::Error{u"test"_s, 1, Bundle::main().localizedString(key)};
        };
        m_fixture->accounts->answerSubtitles(
            answer(u"The subtitle service gave an answer that makes no sense. If you are on a network that "
                   "asks you to sign in, do that first; otherwise try again later."_s));
        m_fixture->accounts->answerFilms(
            answer(u"No private connection to the film database could be made. Check the date of this "
                   "computer, and whether this network can be trusted."_s));
        const auto *label = child<QLabel>("statusLabel");
        QVERIFY(label->text().size() > 100);
        QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                 qPrintable(u"%1 of %2"_s.arg(label->height()).arg(label->heightForWidth(label->width()))));
        const auto *below = child<QWidget>("hearingPopUp");
        QVERIFY(label->geometry().bottom() < below->geometry().top());
        QVERIFY(m_fixture->pane->view()->minimumSizeHint().height() <= PaneHeight);
    }

    void keysAreToBeHadOnTheWeb()
    {
        open();
        child<QPushButton>("getKeyButton")->click();
        QCOMPARE(m_fixture->workspace->opened, QList<QUrl>{QUrl(Links::SubtitleKeyPage)});
    }

    void withoutServicesNothingCanBeTyped()
    {
        ServiceAccounts::setShared({});
        open();
        QVERIFY(!child<QLineEdit>("keyField")->isEnabled());
        QVERIFY(!child<QPushButton>("testButton")->isEnabled());
        QVERIFY(!child<QPushButton>("catalogueButton")->isEnabled());
    }

    void everyControlHasAName()
    {
        open();
        const auto nameOf = [this](const char *name) {
            return QAccessible::queryAccessibleInterface(child<QWidget>(name))->text(QAccessible::Name);
        };
        QCOMPARE(nameOf("keyField"), u"API key"_s);
        QCOMPARE(nameOf("userField"), u"User name"_s);
        QCOMPARE(nameOf("passwordField"), u"Password"_s);
        QCOMPARE(nameOf("metadataKeyField"), u"Film database key"_s);
        for (const char *popUp : {"hearing", "foreign", "machine"}) {
            const auto *label = child<QLabel>((QByteArray(popUp) + "Label").constData());
            QCOMPARE(label->buddy(), child<QWidget>((QByteArray(popUp) + "PopUp").constData()));
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
        open();
        for (const QWidget *widget : m_fixture->window->findChildren<QWidget *>()) {
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *box = qobject_cast<const QCheckBox *>(widget);
            if (!widget->isVisible() || !(label || box))
                continue;
            const int needed = label && label->wordWrap() ? label->heightForWidth(label->width())
                                                          : widget->sizeHint().width();
            const int given = label && label->wordWrap() ? label->height() : widget->width();
            QVERIFY2(needed <= given, qPrintable(widget->objectName()));
        }
        QVERIFY(m_fixture->pane->view()->minimumSizeHint().width() <= PaneWidth);
        QVERIFY(m_fixture->pane->view()->minimumSizeHint().height() <= PaneHeight);
    }
};

PLOVENDIX_GUI_TEST(PrefsServicesSettingsTest)
#include "PrefsServicesSettingsTest.moc"
