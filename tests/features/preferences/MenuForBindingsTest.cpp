#include <features/preferences/MenuForBindings.h>
#include <tests/support/TestMain.h>

#include <QComboBox>

using namespace Qt::StringLiterals;

class MenuForBindingsTest final : public QObject
{
    Q_OBJECT

private:
    static QStringList titlesOf(const MenuForBindings &menu)
    {
        QStringList titles;
        for (int row = 0; row < menu.rowCount(); ++row)
            titles += menu.isSeparator(row) ? u"separator"_s : menu.item(row)->text();
        return titles;
    }

private Q_SLOTS:
    void onlyAnItemTitledWithAHyphenBecomesASeparator_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("becomesSeparator");
        QTest::newRow("hyphen") << u"-"_s << true;
        QTest::newRow("hyphen within") << u"Serbo-Croatian"_s << false;
        QTest::newRow("space before") << u" -"_s << false;
        QTest::newRow("space after") << u"- "_s << false;
        QTest::newRow("two hyphens") << u"--"_s << false;
        QTest::newRow("dash") << u"–"_s << false;
        QTest::newRow("nothing") << QString() << false;
    }
    void onlyAnItemTitledWithAHyphenBecomesASeparator()
    {
        QFETCH(QString, title);
        QFETCH(bool, becomesSeparator);
        MenuForBindings menu;
        menu.insertItem(title, u"code"_s, 0);
        QCOMPARE(menu.rowCount(), 1);
        QCOMPARE(menu.isSeparator(0), becomesSeparator);
        QCOMPARE(menu.item(0)->isSelectable(), !becomesSeparator);
        QCOMPARE(menu.item(0)->isEnabled(), !becomesSeparator);
        QCOMPARE(menu.item(0)->data(Qt::UserRole).toString(), becomesSeparator ? QString() : u"code"_s);
    }

    void itemsStandWhereTheyWereInserted()
    {
        MenuForBindings menu;
        menu.insertItem(u"b"_s, {}, 0);
        menu.insertItem(u"a"_s, {}, 0);
        menu.insertItem(u"-"_s, {}, 1);
        menu.insertItem(u"c"_s, {}, 99);
        QCOMPARE(titlesOf(menu), (QStringList{u"a"_s, u"separator"_s, u"b"_s, u"c"_s}));
    }

    void anItemInsertedByThePopUpBecomesASeparatorToo()
    {
        QComboBox popUp;
        auto *menu = new MenuForBindings(&popUp);
        popUp.setModel(menu);
        popUp.addItem(u"English"_s, u"en"_s);
        popUp.addItem(u"-"_s, u"-"_s);
        popUp.addItem(u"Other"_s, u"code"_s);
        popUp.setItemText(2, u"-"_s);
        popUp.insertItem(1, u"French"_s, u"fr"_s);
        QCOMPARE(titlesOf(*menu), (QStringList{u"English"_s, u"French"_s, u"separator"_s, u"separator"_s}));
        QCOMPARE(popUp.findData(u"-"_s), -1);
        QCOMPARE(popUp.findData(u"code"_s), -1);
    }

    void keysStepOverTheSeparator()
    {
        QComboBox popUp;
        auto *menu = new MenuForBindings(&popUp);
        for (const QString &title : {u"a"_s, u"-"_s, u"b"_s})
            menu->insertItem(title, title, menu->rowCount());
        popUp.setModel(menu);
        popUp.setCurrentIndex(0);
        QTest::keyClick(&popUp, Qt::Key_Down);
        QCOMPARE(popUp.currentText(), u"b"_s);
        QTest::keyClick(&popUp, Qt::Key_Up);
        QCOMPARE(popUp.currentText(), u"a"_s);
    }
};

PLOVENDIX_GUI_TEST(MenuForBindingsTest)
#include "MenuForBindingsTest.moc"
