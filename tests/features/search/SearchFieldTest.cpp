#include "MainViewFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;

class SearchFieldTest final : public MainViewTest
{
    Q_OBJECT

private:
    void enterField() const
    {
        m_view->field()->setFocus();
        QTRY_VERIFY(m_view->field()->hasFocus());
    }
    void clickSearch() const { QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton); }

private Q_SLOTS:
    void textIsSearchedForAsTyped()
    {
        m_view->search(u"  two words "_s);
        QVERIFY(m_view->service->queries.last() == textArgs(u"  two words "_s));
        QCOMPARE(m_view->field()->text(), QString()); // the field is left alone
        m_view->field()->setText(u"  "_s);
        clickSearch();
        QVERIFY(m_view->service->queries.last() == textArgs(u"  "_s));
    }

    void emptyFieldDoesNothing()
    {
        m_view->searchFile(tessaly());
        m_view->field()->clear();
        clickSearch();
        m_view->press(Qt::Key_Return);
        QCOMPARE(m_view->service->queries.size(), 1);
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void searchButtonForgetsFileAndRequest()
    {
        m_view->searchFile(tessaly());
        m_view->field()->setText(u"typed"_s);
        clickSearch();
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
        setLanguage(u"de"_s);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"ger"_s));
    }

    void returnKeepsFileAndRequest()
    {
        m_view->searchFile(tessaly());
        m_view->field()->setText(u"typed"_s);
        enterField();
        m_view->press(Qt::Key_Return);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
        QCOMPARE(m_view->service->queries.size(), 2);
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
        setLanguage(u"de"_s);
        QCOMPARE(m_view->service->queries.last().first().param, Param::byteSize);
    }

    void returnLeavesCaretAndSelectionAsTheyWere_data()
    {
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("caret");
        QTest::newRow("caret within") << 4 << 4;
        QTest::newRow("caret at the start") << 0 << 0;
        QTest::newRow("selected forwards") << 2 << 7;
        QTest::newRow("selected backwards") << 7 << 2;
        QTest::newRow("all of it") << 0 << 10;
    }
    void returnLeavesCaretAndSelectionAsTheyWere()
    {
        QFETCH(int, anchor);
        QFETCH(int, caret);
        QLineEdit *field = m_view->field();
        field->setText(u"some words"_s);
        enterField();
        field->setCursorPosition(anchor);
        if (caret != anchor)
            field->setSelection(anchor, caret - anchor);
        connect(field, &QLineEdit::editingFinished, field, [field] {
            field->deselect();
            field->setCursorPosition(9);
        });
        m_view->press(Qt::Key_Return);
        m_view->turn();
        QCOMPARE(field->cursorPosition(), caret);
        QCOMPARE(field->selectedText(), u"some words"_s.mid(qMin(anchor, caret), qAbs(caret - anchor)));
    }

    void fieldLeftBeforeTheTurnIsLeftAlone()
    {
        m_view->showResults(2);
        m_view->field()->setText(u"some words"_s);
        for (const bool isLeftFirst : {true, false}) {
            enterField();
            m_view->field()->setSelection(0, 4);
            if (isLeftFirst)
                m_view->table()->setFocus();
            m_view->controller->controlTextDidEndEditing(m_view->field());
            m_view->table()->setFocus();
            m_view->field()->setSelection(5, 5);
            m_view->turn();
            QCOMPARE(m_view->field()->selectedText(), u"words"_s);
            QVERIFY(m_view->table()->hasFocus());
        }
    }

    void wordsTypedMeanwhileStayInOrder()
    {
        enterField();
        m_view->controller->controlTextDidEndEditing(m_view->field());
        QTest::keyClicks(m_view->field(), u"l"_s); // before the turn that puts the caret back
        m_view->turn();
        QTest::keyClicks(m_view->field(), u"ater"_s);
        QCOMPARE(m_view->field()->text(), u"later"_s);
    }

    void fieldHasTheFocusWhenTheWindowAppears() { QTRY_VERIFY(m_view->field()->hasFocus()); }

    void shortcutsGoToTheFieldAndSelectItsText()
    {
        m_view->showResults(2);
        m_view->field()->setText(u"old words"_s);
        for (const Qt::Key key : {Qt::Key_F, Qt::Key_L}) {
            m_view->table()->setFocus();
            m_view->press(key, Qt::ControlModifier);
            m_view->field()->deselect();
            m_view->press(key, Qt::ControlModifier); // from the field itself
            QVERIFY(m_view->field()->hasFocus());
            QCOMPARE(m_view->field()->selectedText(), u"old words"_s);
        }
    }

    void downEntersTheList()
    {
        enterField();
        m_view->press(Qt::Key_Down); // without results it stays
        QVERIFY(m_view->field()->hasFocus());
        m_view->showResults(3);
        m_view->press(Qt::Key_Down, Qt::ControlModifier); // no plain step
        QVERIFY(m_view->field()->hasFocus());
        m_view->press(Qt::Key_Down);
        QVERIFY(m_view->table()->hasFocus());
        QCOMPARE(m_view->table()->selectedRow(), 0);
        m_view->table()->selectRow(2);
        enterField();
        m_view->press(Qt::Key_Down, Qt::KeypadModifier);
        QVERIFY(m_view->table()->hasFocus());
        QCOMPARE(m_view->table()->selectedRow(), 2);
    }

    void downloadButtonMayBeDestroyedFirst()
    {
        delete m_view->downloadButton();
        m_view->searchFile(tessaly());
        QCOMPARE(m_view->service->queries.size(), 1);
    }
};

PLOVENDIX_GUI_TEST(SearchFieldTest)
#include "SearchFieldTest.moc"
