#include <base/UserDefaults.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/scenes/TableView.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
class SceneController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isSearching READ isSearching WRITE setSearching NOTIFY isSearchingChanged)
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    Q_INVOKABLE void download(QObject *sender) { m_calls += u"download from "_s + sender->objectName(); }
    Q_INVOKABLE void controlTextDidEndEditing(QObject *sender)
    {
        m_calls += u"ended "_s + sender->objectName();
    }
    Q_INVOKABLE void refresh() { m_calls += u"refresh"_s; }
    void notInvokable(QObject *) {}

    bool isSearching() const { return m_searching; }
    void setSearching(bool searching)
    {
        m_searching = searching;
        Q_EMIT isSearchingChanged();
    }
    QString name() const { return u"Plovendix"_s; }

    QStringList takeCalls() { return std::exchange(m_calls, {}); }

Q_SIGNALS:
    void isSearchingChanged();

private:
    bool m_searching = false;
    QStringList m_calls;
};

template <class Widget>
Widget *named(QWidget &root, const QString &name)
{
    auto *widget = new Widget(&root);
    widget->setObjectName(name);
    return widget;
}
} // namespace

class SceneConnectionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_root = std::make_unique<QWidget>();
        m_controller = std::make_unique<SceneController>();
    }
    void cleanup()
    {
        m_root.reset();
        m_controller.reset();
    }

    void buttonSendsItsActionOnAClick()
    {
        auto *button = named<QPushButton>(*m_root, u"downloadButton"_s);
        button->setProperty("action", u"download:"_s);
        connectScene(*m_root, *m_controller);
        button->click();
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from downloadButton"_s}));
    }

    void fieldSendsItsActionOnReturnOnly()
    {
        auto *field = named<QLineEdit>(*m_root, u"searchField"_s);
        field->setProperty("action", u"download:"_s);
        connectScene(*m_root, *m_controller);
        QTest::keyClicks(field, u"text"_s);
        Q_EMIT field->editingFinished();
        QCOMPARE(m_controller->takeCalls(), QStringList());
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from searchField"_s}));
    }

    void fieldSendsBothItsActions()
    {
        auto *field = named<QLineEdit>(*m_root, u"searchField"_s);
        field->setProperty("action", u"download:"_s);
        field->setProperty("endEditingAction", u"controlTextDidEndEditing:"_s);
        connectScene(*m_root, *m_controller);
        QTest::keyClicks(field, u"text"_s);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(m_controller->takeCalls(),
                 QStringList({u"download from searchField"_s, u"ended searchField"_s}));
    }

    void popupSendsItsActionWhenAPersonChooses()
    {
        auto *comboBox = named<QComboBox>(*m_root, u"popup"_s);
        comboBox->addItems({u"One"_s, u"Two"_s, u"Three"_s});
        comboBox->setProperty("action", u"download:"_s);
        connectScene(*m_root, *m_controller);
        comboBox->setCurrentIndex(1);
        QCOMPARE(m_controller->takeCalls(), QStringList());
        QTest::keyClick(comboBox, Qt::Key_Down);
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from popup"_s}));
    }

    void menuItemsOfTheSceneSendTheirs()
    {
        auto *menu = named<QMenu>(*m_root, u"menu"_s);
        QAction *action = menu->addAction(u"Save As"_s);
        action->setObjectName(u"saveAs"_s);
        action->setProperty("action", u"download:"_s);
        connectScene(*m_root, *m_controller);
        action->trigger();
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from saveAs"_s}));
    }

    void tableSendsItsDoubleAction()
    {
        auto *table = named<TableView>(*m_root, u"tableView"_s);
        table->setProperty("doubleAction", u"download:"_s);
        connectScene(*m_root, *m_controller);
        Q_EMIT table->doubleActionTriggered();
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from tableView"_s}));
    }

    void selectorWithoutAColonHasNoSender()
    {
        auto *button = named<QPushButton>(*m_root, u"button"_s);
        button->setProperty("action", u"refresh"_s);
        connectScene(*m_root, *m_controller);
        button->click();
        QCOMPARE(m_controller->takeCalls(), QStringList({u"refresh"_s}));
    }

    void rootAndPartsOfPartsAreConnectedToo()
    {
        QPushButton root;
        root.setObjectName(u"root"_s);
        root.setProperty("action", u"download:"_s);
        auto *inner = named<QPushButton>(*new QWidget(new QWidget(&root)), u"inner"_s);
        inner->setProperty("action", u"download:"_s);
        connectScene(root, *m_controller);
        root.click();
        inner->click();
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from root"_s, u"download from inner"_s}));
    }

    void bindingsReachTheControllerAndTheDefaults()
    {
        auto *button = named<QPushButton>(*m_root, u"button"_s);
        button->setProperty("bindEnabled", u"!isSearching"_s);
        auto *label = named<QLabel>(*m_root, u"label"_s);
        label->setProperty("bindValue", u"name"_s);
        label->setProperty("bindHidden", u"isSearching"_s);
        auto *titled = named<QPushButton>(*m_root, u"titled"_s);
        titled->setProperty("bindTitle", u" name | Unheard of "_s);
        auto *checkBox = named<QCheckBox>(*m_root, u"checkBox"_s);
        checkBox->setProperty("bindValue", u"!defaults.some.key"_s);
        auto *popup = named<QComboBox>(*m_root, u"popup"_s);
        popup->addItems({u"German"_s, u"French"_s});
        popup->setProperty("itemObjects", QStringList({u"de"_s, u"fr"_s}));
        popup->setProperty("bindSelectedObject", u"defaults.languageCode"_s);
        UserDefaults::standard().setObject(u"languageCode"_s, u"fr"_s);
        connectScene(*m_root, *m_controller);

        QVERIFY(button->isEnabled());
        QVERIFY(!label->isHidden());
        QCOMPARE(label->text(), u"Plovendix"_s);
        QCOMPARE(titled->text(), u"Plovendix"_s);
        QVERIFY(checkBox->isChecked());
        QCOMPARE(popup->currentText(), u"French"_s);
        m_controller->setSearching(true);
        QVERIFY(!button->isEnabled());
        QVERIFY(label->isHidden());
        checkBox->click();
        QVERIFY(UserDefaults::standard().boolean(u"some.key"_s));
    }

    void tagsOfItemsSelectByNumber()
    {
        auto *popup = named<QComboBox>(*m_root, u"popup"_s);
        popup->addItems({u"Hourly"_s, u"Daily"_s});
        popup->setProperty("itemTags", QStringList({u"3600"_s, u"86400"_s, u"of no item"_s}));
        popup->setProperty("bindSelectedTag", u"defaults.interval"_s);
        UserDefaults::standard().setObject(u"interval"_s, 86400);
        connectScene(*m_root, *m_controller);
        QCOMPARE(popup->currentText(), u"Daily"_s);
        QCOMPARE(popup->currentData(), QVariant(86400LL));
    }

    void tagThatIsNoIntegerIsAFatalFault()
    {
        auto *popup = named<QComboBox>(*m_root, u"popup"_s);
        popup->addItem(u"Daily"_s);
        popup->setProperty("itemTags", QStringList(u"daily"_s));
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(connectScene(*m_root, *m_controller), FatalFaultCaught);
    }

    void sceneThatNamesNothingConnectsNothing()
    {
        auto *button = named<QPushButton>(*m_root, u"button"_s);
        connectScene(*m_root, *m_controller);
        button->click();
        QCOMPARE(m_controller->takeCalls(), QStringList());
    }

    void controllerGoingFirstLeavesTheSceneSilent()
    {
        auto *button = named<QPushButton>(*m_root, u"button"_s);
        button->setProperty("action", u"download:"_s);
        button->setProperty("bindEnabled", u"!isSearching"_s);
        connectScene(*m_root, *m_controller);
        m_controller.reset();
        button->click();
        QVERIFY(button->isEnabled());
    }

    void mistakesInASceneAreFatalFaults_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QString>("value");
        QTest::newRow("unknown selector") << QByteArray("action") << u"upload:"_s;
        QTest::newRow("selector of another form") << QByteArray("action") << u"download"_s;
        QTest::newRow("method nobody may invoke") << QByteArray("action") << u"notInvokable:"_s;
        QTest::newRow("malformed selector") << QByteArray("action") << u"down load::"_s;
        QTest::newRow("double action of no table") << QByteArray("doubleAction") << u"download:"_s;
        QTest::newRow("end of no edit") << QByteArray("endEditingAction") << u"download:"_s;
        QTest::newRow("unknown property") << QByteArray("bindEnabled") << u"isUnknown"_s;
        QTest::newRow("no property") << QByteArray("bindEnabled") << u"!"_s;
        QTest::newRow("unfit binding") << QByteArray("bindSelectedTag") << u"isSearching"_s;
    }
    void mistakesInASceneAreFatalFaults()
    {
        QFETCH(QByteArray, property);
        QFETCH(QString, value);
        auto *button = named<QPushButton>(*m_root, u"theButton"_s);
        button->setProperty(property.constData(), value);
        const FatalFaultTrap trap;
        QString message;
        try {
            connectScene(*m_root, *m_controller);
        } catch (const FatalFaultCaught &fault) {
            message = fault.message;
        }
        const bool namesWhatIsWrong =
            message.contains(u"theButton"_s) || message.contains(u"SceneController"_s);
        QVERIFY2(namesWhatIsWrong, qPrintable(message));
        if (property == "action")
            QVERIFY(message.contains(u'"' + value + u'"') && message.contains(u"\"theButton\""_s));
    }

    void actionOfAWidgetWithoutOneIsAFatalFault()
    {
        named<QLabel>(*m_root, u"label"_s)->setProperty("action", u"download:"_s);
        const FatalFaultTrap trap;
        QVERIFY_EXCEPTION_THROWN(connectScene(*m_root, *m_controller), FatalFaultCaught);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<QWidget> m_root;
    std::unique_ptr<SceneController> m_controller;
};

PLOVENDIX_GUI_TEST(SceneConnectionsTest)
#include "SceneConnectionsTest.moc"
