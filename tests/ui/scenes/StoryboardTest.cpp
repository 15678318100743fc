#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/controls/TableCellView.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/TitlebarAccessoryViewController.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// The message of the fatal fault that `act` ends in; empty when it does not.
template <class Act>
QString faultOf(Act act)
{
    const FatalFaultTrap trap;
    try {
        act();
    } catch (const FatalFaultCaught &fault) {
        return fault.message;
    }
    return {};
}
} // namespace

class StoryboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Storyboard::registerController(u"Scenes"_s, u"Plain"_s,
                                       [] { return ViewController::make<ViewController>(); });
        Storyboard::registerController(u"Scenes"_s, u"Accessory"_s, [] {
            return ViewController::make<TitlebarAccessoryViewController>();
        });
        Storyboard::registerController(u"Scenes"_s, u"Broken"_s,
                                       []() -> std::shared_ptr<ViewController> { return {}; });
        Storyboard::registerCell(u"Scenes"_s, u"Cell"_s, [] { return std::make_unique<TableCellView>(); });
        Storyboard::registerController(u"Other"_s, u"Elsewhere"_s,
                                       [] { return ViewController::make<ViewController>(); });
    }

    void everyInstantiationMakesANewController()
    {
        const Storyboard storyboard = Storyboard::named(u"Scenes"_s);
        const auto first = storyboard.instantiateController(u"Plain"_s);
        QVERIFY(first);
        QVERIFY(first != storyboard.instantiateController(u"Plain"_s));
        QCOMPARE(first.use_count(), 1L);
    }

    void controllerComesInItsClass()
    {
        const auto accessory =
            Storyboard::named(u"Scenes"_s).instantiate<TitlebarAccessoryViewController>(u"Accessory"_s);
        QVERIFY(accessory);
        QVERIFY(Storyboard::named(u"Scenes"_s).instantiate<ViewController>(u"Accessory"_s));
    }

    void identifiersAreSortedAndOfThisStoryboardOnly()
    {
        QCOMPARE(Storyboard::named(u"Scenes"_s).controllerIdentifiers(),
                 QStringList({u"Accessory"_s, u"Broken"_s, u"Plain"_s}));
        QCOMPARE(Storyboard::named(u"Other"_s).controllerIdentifiers(), QStringList({u"Elsewhere"_s}));
    }

    void unknownStoryboardIsAFatalFault()
    {
        QVERIFY(faultOf([] { Storyboard::named(u"Nowhere"_s); }).contains(u"\"Nowhere\""_s));
    }

    void unknownIdentifierIsAFatalFault_data()
    {
        QTest::addColumn<QString>("identifier");
        QTest::newRow("unknown") << u"Nothing"_s;
        QTest::newRow("of another storyboard") << u"Elsewhere"_s;
        QTest::newRow("a cell's") << u"Cell"_s;
        QTest::newRow("in another case") << u"plain"_s;
        QTest::newRow("whose factory makes nothing") << u"Broken"_s;
    }
    void unknownIdentifierIsAFatalFault()
    {
        QFETCH(QString, identifier);
        const Storyboard storyboard = Storyboard::named(u"Scenes"_s);
        const QString fault = faultOf([&] { storyboard.instantiateController(identifier); });
        QVERIFY2(fault.contains(u'"' + identifier + u'"') && fault.contains(u"\"Scenes\""_s),
                 qPrintable(fault));
    }

    void wrongClassIsAFatalFault()
    {
        const Storyboard storyboard = Storyboard::named(u"Scenes"_s);
        const QString fault =
            faultOf([&] { storyboard.instantiate<TitlebarAccessoryViewController>(u"Plain"_s); });
        QVERIFY2(fault.contains(u"\"Plain\""_s), qPrintable(fault));
    }

    void cellsAreMadeAnewAndUnknownOnesAreNothing()
    {
        const Storyboard storyboard = Storyboard::named(u"Scenes"_s);
        const auto first = storyboard.makeCell(u"Cell"_s);
        QVERIFY(first);
        QVERIFY(first != storyboard.makeCell(u"Cell"_s));
        QVERIFY(!storyboard.makeCell(u"Nothing"_s));
    }

    void sceneRegisteredAgainTakesTheNewerFactory()
    {
        Storyboard::registerController(u"Twice"_s, u"Scene"_s,
                                       [] { return ViewController::make<ViewController>(); });
        Storyboard::registerController(
            u"Twice"_s, u"Scene"_s, [] { return ViewController::make<TitlebarAccessoryViewController>(); });
        QVERIFY(Storyboard::named(u"Twice"_s).instantiate<TitlebarAccessoryViewController>(u"Scene"_s));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(StoryboardTest)
#include "StoryboardTest.moc"
