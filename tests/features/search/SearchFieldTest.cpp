#include "MainViewFixture.h"

#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;

namespace
{
const QUrl Video(u"file:///videos/Some.Film.2019.mkv"_s);
const ExternalRequestInfo Tessaly{u"tessaly3"_s, u"42"_s, u"Tessaly"_s};
} // namespace

class SearchFieldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<MainViewFixture>();
        m_sandbox.clearPrintedLines();
    }
    void cleanup() { m_view.reset(); }

    void textSearchAsksForTheTextAsTypedAndTheLanguage()
    {
        m_view->controller->searchForText(u"  two words "_s, std::nullopt);
        QVERIFY(m_view->service->queries.first() == textArgs(u"  two words "_s));
    }

    void textSearchLeavesFieldAndFileAlone()
    {
        m_view->controller->searchForFile(Video, std::nullopt);
        m_view->controller->searchForText(u"other"_s, std::nullopt);
        QCOMPARE(m_view->field()->text(), u"Some.Film.2019.mkv"_s);
        // The file is still the one that a language change repeats.
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(m_view->service->queries.last().first().param, Param::byteSize);
    }

    void searchButtonWithAnEmptyFieldDoesNothing()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        m_view->field()->clear();
        QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
        QCOMPARE(m_view->service->queries.size(), 1);
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
    }

    void returnWithAnEmptyFieldDoesNothing()
    {
        m_view->field()->clear();
        m_view->press(Qt::Key_Return);
        QVERIFY(m_view->service->queries.isEmpty());
        QVERIFY(!m_view->controller->isSearching());
    }

    void searchButtonForgetsFileAndRequest()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        m_view->field()->setText(u"typed"_s);
        QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
        QCOMPARE(m_view->downloadButton()->text(), u"Download"_s);
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s, u"ger"_s));
    }

    void returnKeepsFileAndRequest()
    {
        m_view->controller->searchForFile(Video, Tessaly);
        m_view->field()->setText(u"typed"_s);
        m_view->field()->setFocus();
        m_view->press(Qt::Key_Return);
        QVERIFY(m_view->service->queries.last() == textArgs(u"typed"_s));
        QCOMPARE(m_view->service->queries.size(), 2);
        QCOMPARE(m_view->downloadButton()->text(), u"Send to Tessaly"_s);
        UserDefaults::standard().setObject(u"languageCode"_s, u"de"_s);
        QCOMPARE(m_view->service->queries.last().first().param, Param::byteSize);
    }

    void returnLeavesTheSelectionWhereItWas()
    {
        m_view->field()->setText(u"some words"_s);
        m_view->field()->setFocus();
        QTRY_VERIFY(m_view->field()->hasFocus());
        m_view->field()->setSelection(5, 5);
        connect(m_view->field(), &QLineEdit::editingFinished, m_view->field(),
                [this] { m_view->field()->deselect(); });
        m_view->press(Qt::Key_Return);
        m_view->turn();
        QCOMPARE(m_view->field()->selectedText(), u"words"_s);
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
        field->setFocus();
        QTRY_VERIFY(field->hasFocus());
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

    void endOfEditingElsewhereLeavesTheFieldAlone()
    {
        m_view->showResults(2);
        m_view->field()->setText(u"some words"_s);
        m_view->field()->setSelection(0, 4);
        m_view->table()->setFocus();
        m_view->controller->controlTextDidEndEditing(m_view->table());
        m_view->field()->setSelection(5, 5);
        m_view->turn();
        QCOMPARE(m_view->field()->selectedText(), u"words"_s);
        QVERIFY(m_view->table()->hasFocus());
    }

    void fieldLeftMeanwhileIsLeftAlone()
    {
        m_view->showResults(2);
        m_view->field()->setText(u"some words"_s);
        m_view->field()->setFocus();
        m_view->field()->setSelection(0, 4);
        m_view->controller->controlTextDidEndEditing(m_view->field());
        m_view->table()->setFocus();
        m_view->field()->setSelection(5, 5);
        m_view->turn();
        QCOMPARE(m_view->field()->selectedText(), u"words"_s);
    }

    void wordsTypedMeanwhileStayInOrder()
    {
        QLineEdit *field = m_view->field();
        field->setFocus();
        QTRY_VERIFY(field->hasFocus());
        m_view->controller->controlTextDidEndEditing(field);
        QTest::keyClicks(field, u"l"_s); // before the turn that puts the caret back
        m_view->turn();
        QTest::keyClicks(field, u"ater"_s);
        QCOMPARE(field->text(), u"later"_s);
    }

    void spacesAreAText()
    {
        m_view->field()->setText(u"  "_s);
        QTest::mouseClick(m_view->widget("searchButton"), Qt::LeftButton);
        QVERIFY(m_view->service->queries.last() == textArgs(u"  "_s));
        m_view->field()->setFocus();
        m_view->press(Qt::Key_Return);
        QCOMPARE(m_view->service->queries.size(), 2);
    }

    void fieldHasTheFocusWhenTheWindowAppears() { QTRY_VERIFY(m_view->field()->hasFocus()); }

    void shortcutsGoToTheFieldAndSelectItsText_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Ctrl+F") << Qt::Key_F;
        QTest::newRow("Ctrl+L") << Qt::Key_L;
    }

    void shortcutsGoToTheFieldAndSelectItsText()
    {
        QFETCH(Qt::Key, key);
        m_view->showResults(2);
        m_view->field()->setText(u"old words"_s);
        m_view->table()->setFocus();
        m_view->press(key, Qt::ControlModifier);
        QVERIFY(m_view->field()->hasFocus());
        QCOMPARE(m_view->field()->selectedText(), u"old words"_s);
        QTest::keyClicks(m_view->field(), u"new"_s);
        QCOMPARE(m_view->field()->text(), u"new"_s);
        m_view->press(key, Qt::ControlModifier); // where the field has the focus already
        QCOMPARE(m_view->field()->selectedText(), u"new"_s);
    }

    void cancelLeavesTheKeptTextSelected()
    {
        m_view->field()->setText(u"typed"_s);
        m_view->controller->doSearch(nullptr);
        m_view->controller->cancelQuery(nullptr);
        QVERIFY(m_view->field()->hasFocus());
        QCOMPARE(m_view->field()->selectedText(), u"typed"_s);
    }

    void downEntersTheList()
    {
        m_view->showResults(3);
        m_view->field()->setFocus();
        QTRY_VERIFY(m_view->field()->hasFocus());
        m_view->press(Qt::Key_Down);
        QVERIFY(m_view->table()->hasFocus());
        QCOMPARE(m_view->table()->selectedRow(), 0);
        m_view->press(Qt::Key_Down);
        QCOMPARE(m_view->table()->selectedRow(), 1);
    }

    void downGoesBackToTheRowThatIsSelected()
    {
        m_view->showResults(3);
        m_view->table()->selectRow(2);
        m_view->field()->setFocus();
        QTRY_VERIFY(m_view->field()->hasFocus());
        m_view->press(Qt::Key_Down, Qt::ControlModifier); // no plain step
        QVERIFY(m_view->field()->hasFocus());
        m_view->press(Qt::Key_Down, Qt::KeypadModifier);
        QVERIFY(m_view->table()->hasFocus());
        QCOMPARE(m_view->table()->selectedRow(), 2);
    }

    void downWithoutResultsStaysInTheField()
    {
        m_view->field()->setFocus();
        QTRY_VERIFY(m_view->field()->hasFocus());
        m_view->press(Qt::Key_Down);
        QVERIFY(m_view->field()->hasFocus());
        m_view->showResults(0);
        m_view->press(Qt::Key_Down);
        QVERIFY(m_view->field()->hasFocus());
    }

    void downloadButtonMayBeDestroyedFirst()
    {
        delete m_view->downloadButton();
        m_view->controller->searchForText(u"words"_s, ExternalRequestInfo{u"a"_s, u"1"_s, u"A"_s});
        QCOMPARE(m_view->service->queries.size(), 1);
    }

private:
    Sandbox m_sandbox;
    std::unique_ptr<MainViewFixture> m_view;
};

PLOVENDIX_GUI_TEST(SearchFieldTest)
#include "SearchFieldTest.moc"
