#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <ui/controls/TableCellView.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/TitlebarAccessoryViewController.h>

using namespace Qt::StringLiterals;

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
        QVERIFY(storyboard.instantiate<TitlebarAccessoryViewController>(u"Accessory"_s));
        const auto cell = storyboard.makeCell(u"Cell"_s);
        QVERIFY(cell);
        QVERIFY(cell != storyboard.makeCell(u"Cell"_s));
        QVERIFY(!storyboard.makeCell(u"Nothing"_s));
        QCOMPARE(storyboard.controllerIdentifiers(),
                 QStringList({u"Accessory"_s, u"Broken"_s, u"Plain"_s})); // sorted
    }

    void mistakesAreFatalFaults()
    {
        QVERIFY(faultOf([] { Storyboard::named(u"Nowhere"_s); }).contains(u"\"Nowhere\""_s));
        const Storyboard storyboard = Storyboard::named(u"Scenes"_s);
        // Unknown, of another storyboard, a cell's, in another case, and that of a factory which makes
        // nothing.
        for (const QString &identifier : {u"Nothing"_s, u"Elsewhere"_s, u"Cell"_s, u"plain"_s, u"Broken"_s}) {
            const QString fault = faultOf([&] { storyboard.instantiateController(identifier); });
            QVERIFY2(fault.contains(u'"' + identifier + u'"') && fault.contains(u"\"Scenes\""_s),
                     qPrintable(fault));
        }
        const QString fault =
            faultOf([&] { storyboard.instantiate<TitlebarAccessoryViewController>(u"Plain"_s); });
        QVERIFY2(fault.contains(u"\"Plain\""_s), qPrintable(fault));
    }

private:
    Sandbox m_sandbox;
};

PLOVENDIX_GUI_TEST(StoryboardTest)
#include "StoryboardTest.moc"
