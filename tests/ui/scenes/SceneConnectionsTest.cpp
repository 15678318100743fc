#include <base/UserDefaults.h>
#include <base/ValueTransformer.h>
#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/scenes/SceneConnections.h>
#include <ui/scenes/TableView.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{
class FirstLetter final : public ValueTransformer
{
public:
    QVariant transformedValue(const QVariant &value) const override { return value.toString().left(1); }
};

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

/// A new part of a scene, with a property.
template <class Part>
Part *named(QWidget &parent, const QString &name, const char *property = "", const QString &value = {})
{
    auto *part = new Part(&parent);
    part->setObjectName(name);
    part->setProperty(property, value);
    return part;
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
    void cleanup() { m_root.reset(); }

    void partsSendTheirSelectors()
    {
        QPushButton root;
        root.setProperty("action", u"refresh"_s); // without a colon it has no sender
        auto *inner = named<QPushButton>(*new QWidget(&root), u"inner"_s, "action", u"download:"_s);
        auto *silent = named<QPushButton>(root, u"silent"_s);
        auto *table = named<TableView>(root, u"table"_s, "doubleAction", u"download:"_s);
        auto *popUp = named<QComboBox>(root, u"popUp"_s, "action", u"download:"_s);
        popUp->addItems({u"One"_s, u"Two"_s, u"Three"_s});
        connectScene(root, *m_controller);
        root.click();
        inner->click();
        silent->click();
        Q_EMIT table->doubleActionTriggered();
        popUp->setCurrentIndex(1); // not by a person
        QCOMPARE(m_controller->takeCalls(),
                 QStringList({u"refresh"_s, u"download from inner"_s, u"download from table"_s}));
        QTest::keyClick(popUp, Qt::Key_Down);
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from popUp"_s}));
    }

    void fieldSendsItsActionOnReturnAndTheEndOfAnEdit()
    {
        auto *field = named<QLineEdit>(*m_root, u"field"_s, "action", u"download:"_s);
        field->setProperty("endEditingAction", u"controlTextDidEndEditing:"_s);
        connectScene(*m_root, *m_controller);
        QTest::keyClicks(field, u"text"_s);
        QCOMPARE(m_controller->takeCalls(), QStringList());
        Q_EMIT field->editingFinished();
        QCOMPARE(m_controller->takeCalls(), QStringList({u"ended field"_s}));
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from field"_s, u"ended field"_s}));
    }

    void escapeClosesAnOpenPopUpBeforeItsAction()
    {
        auto *action = named<QAction>(*m_root, u"close"_s, "action", u"download:"_s);
        connectScene(*m_root, *m_controller);
        QMenu popUp;
        popUp.addAction(u"Item"_s);
        popUp.popup({});
        action->trigger(); // by another key
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from close"_s}));
        action->setShortcut(Qt::Key_Escape);
        action->trigger();
        QVERIFY(m_controller->takeCalls().isEmpty() && !popUp.isVisible());
        action->trigger();
        QCOMPARE(m_controller->takeCalls(), QStringList({u"download from close"_s}));
    }

    /// The list takes the key before the window's shortcut for it.
    void escapeBelongsToTheListOfAComboBox()
    {
        auto *comboBox = named<QComboBox>(*m_root, u"popUp"_s);
        connectScene(*m_root, *m_controller);
        const auto isTaken = [comboBox](Qt::Key key) {
            QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
            event.ignore();
            QApplication::sendEvent(comboBox->view(), &event);
            return event.isAccepted();
        };
        QVERIFY(isTaken(Qt::Key_Escape));
        QVERIFY(!isTaken(Qt::Key_F5));
    }

    void bindingsReachTheControllerAndTheDefaults()
    {
        ValueTransformer::setValueTransformer(std::make_shared<FirstLetter>(), u"FirstLetter"_s);
        UserDefaults::standard().setObject(u"code"_s, u"86400"_s);
        UserDefaults::standard().setObject(u"interval"_s, 86400);
        auto *button = named<QPushButton>(*m_root, u"button"_s, "bindEnabled", u"!isSearching"_s);
        button->setProperty("bindTitle", u" name | FirstLetter "_s);
        button->setProperty("action", u"download:"_s);
        auto *label = named<QLabel>(*m_root, u"label"_s, "bindValue", u"name"_s);
        label->setProperty("bindHidden", u"isSearching"_s);
        auto *checkBox = named<QCheckBox>(*m_root, u"box"_s, "bindValue", u"! defaults.some.key"_s);
        auto *objects = named<QComboBox>(*m_root, u"one"_s, "bindSelectedObject", u"defaults.code"_s);
        objects->addItems({u"German"_s, u"French"_s});
        objects->setProperty("itemObjects", QStringList({u"de"_s, u"86400"_s}));
        auto *tags = named<QComboBox>(*m_root, u"two"_s, "bindSelectedTag", u"defaults.interval"_s);
        tags->addItems({u"Hourly"_s, u"Daily"_s});
        tags->setProperty("itemTags", QStringList({u"3600"_s, u"86400"_s, u"of no item"_s}));
        connectScene(*m_root, *m_controller);

        QVERIFY(button->isEnabled() && !label->isHidden() && checkBox->isChecked());
        QCOMPARE(label->text(), u"Plovendix"_s);
        QCOMPARE(button->text(), u"P"_s);
        QCOMPARE(objects->currentData(), QVariant(u"86400"_s));
        QCOMPARE(tags->currentData(), QVariant(86400LL));
        m_controller->setSearching(true);
        QVERIFY(!button->isEnabled() && label->isHidden());
        checkBox->click();
        QVERIFY(UserDefaults::standard().boolean(u"some.key"_s));
        m_controller->setSearching(false);
        m_controller.reset(); // the scene may outlive it
        button->click();
        QVERIFY(button->isEnabled());
    }

    void mistakesInASceneAreFatalFaults()
    {
        const std::tuple<const char *, QString, QString> mistakes[] = {
            // and what the fault names
            {"action", u"upload:"_s, u"\"upload:\""_s},
            {"action", u"download"_s, u"SceneController"_s}, // which takes a sender
            {"action", u"notInvokable:"_s, u"\"theWidget\""_s},
            {"action", u"down load::"_s, u"\"down load::\""_s},
            {"action", u"download:"_s, u"no action"_s}, // a group box does nothing
            {"doubleAction", u"download:"_s, u"no doubleAction"_s},
            {"endEditingAction", u"download:"_s, u"no endEditingAction"_s},
            {"bindEnabled", u"isUnknown"_s, u"\"isUnknown\""_s},
            {"bindEnabled", u"!"_s, u"SceneController"_s},
            {"bindSelectedTag", u"isSearching"_s, u"QGroupBox \"theWidget\""_s},
        };
        for (const auto &[property, value, expected] : mistakes) {
            auto *widget = named<QGroupBox>(*m_root, u"theWidget"_s, property, value);
            const QString message = faultOf([&] { connectScene(*widget, *m_controller); });
            QVERIFY2(message.contains(expected), qPrintable(value + u": "_s + message));
        }
        QComboBox popUp;
        popUp.addItem(u"Daily"_s);
        popUp.setProperty("itemTags", QStringList(u"daily"_s)); // no integer
        QVERIFY(faultOf([&] { connectScene(popUp, *m_controller); }).contains(u"\"daily\""_s));
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<QWidget> m_root;
    std::unique_ptr<SceneController> m_controller;
};

PLOVENDIX_GUI_TEST(SceneConnectionsTest)
#include "SceneConnectionsTest.moc"
