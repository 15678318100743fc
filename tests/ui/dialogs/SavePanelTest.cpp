#include <tests/ui/window/GermanTexts.h>
#include "SavePanelFixture.h"

#include <tests/support/TestMain.h>

#include <QAccessible>
#include <QComboBox>
#include <QMessageBox>

#include <thread>

using namespace Qt::StringLiterals;

/// How a save sheet is answered, and how long it lives.
class SavePanelTest : public SavePanelFixture
{
    Q_OBJECT

private Q_SLOTS:
    void personSavesUnderTheSuggestedName_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::newRow("a new file") << false;
        QTest::newRow("an existing file, without a question") << true;
    }
    void personSavesUnderTheSuggestedName()
    {
        QFETCH(bool, exists);
        if (exists)
            makeFile(m_name);
        QVERIFY(!m_panel->URL());
        QFileDialog *dialog = show();
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(nameField(*dialog)->text(), m_name);
        QCOMPARE(nameField(*dialog)->selectedText(), u"Movie.en"_s);
        finish(*dialog);
        QVERIFY(m_window->findChildren<QMessageBox *>().isEmpty());
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QCOMPARE(chosenPath(), m_folder + u'/' + m_name);
        QTRY_VERIFY(m_window->findChildren<QFileDialog *>().isEmpty());
    }

    void sheetIsModalToItsWindow()
    {
        m_panel->title = u"Save As"_s;
        m_panel->extensionHidden = false;
        m_panel->canSelectHiddenExtension = true; // both are only stored
        QFileDialog *dialog = show();
        QCOMPARE(dialog->windowTitle(), u"Save As"_s);
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        QCOMPARE(dialog->parentWidget(), m_window.get());
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QVERIFY(dialog->testOption(QFileDialog::DontUseNativeDialog));
        QVERIFY(!dialog->findChild<QComboBox *>(u"fileTypeCombo"_s)->isVisible());
    }

    void sheetSpeaksThePersonsLanguage()
    {
        const GermanTexts german(m_sandbox, {{u"Save"_s, u"Sichern"_s},
                                             {u"Cancel"_s, u"Abbrechen"_s},
                                             {u"Look in:"_s, u"Ort:"_s},
                                             {u"File &name:"_s, u"Dateiname:"_s}});
        QFileDialog *dialog = show();
        QCOMPARE(dialog->windowTitle(), u"Sichern"_s);
        QCOMPARE(dialog->labelText(QFileDialog::Accept), u"Sichern"_s);
        QCOMPARE(dialog->labelText(QFileDialog::Reject), u"Abbrechen"_s);
        QCOMPARE(dialog->labelText(QFileDialog::LookIn), u"Ort:"_s);
        auto *field = QAccessible::queryAccessibleInterface(nameField(*dialog));
        QCOMPARE(field->text(QAccessible::Name), u"Dateiname:"_s);
    }

    void cancellingAnswersOnceAndChoosesNothing_data()
    {
        QTest::addColumn<bool>("byClosing");
        QTest::newRow("Escape") << false;
        QTest::newRow("closing the sheet") << true;
    }
    void cancellingAnswersOnceAndChoosesNothing()
    {
        QFETCH(bool, byClosing);
        QFileDialog *dialog = show();
        if (byClosing)
            dialog->close();
        else
            QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_VERIFY(m_window->findChildren<QFileDialog *>().isEmpty());
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel}));
        QVERIFY(!m_panel->URL());
        QVERIFY(!UserDefaults::standard().string(u"lastSaveFolder"_s));
    }

    void panelMayBeMadeAndReleasedOnAnotherThread()
    {
        std::thread([this] {
            m_panel = std::make_shared<SavePanel>();
            m_panel->nameFieldStringValue = m_name;
        }).join();
        QFileDialog *dialog = show();
        QCOMPARE(nameField(*dialog)->text(), m_name);
        finish(*dialog);
        QTRY_COMPARE(m_panel.use_count(), 1L);
        std::thread([held = std::move(m_panel)]() mutable { held.reset(); }).join();
        QCOMPARE(m_answers.size(), 1);
    }

    void panelKeepsItselfUntilItIsAnswered()
    {
        QFileDialog *dialog = show();
        const std::weak_ptr<SavePanel> panel = m_panel;
        m_panel.reset();
        QVERIFY(!panel.expired());
        finish(*dialog);
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QTRY_VERIFY(panel.expired());
    }

    void windowDestroyedFirstAnswersNothing()
    {
        show();
        auto waiting = std::make_shared<SavePanel>();
        begin(waiting);
        const std::weak_ptr<SavePanel> panel = m_panel;
        const std::weak_ptr<SavePanel> other = std::exchange(waiting, nullptr);
        m_panel.reset();
        m_window.reset();
        QVERIFY(m_answers.isEmpty());
        QVERIFY(panel.expired());
        QVERIFY(other.expired());
    }

    void answerMayDestroyTheWindow()
    {
        m_panel->beginSheetModalForWindow(m_window.get(), [this](ModalResponse response) {
            m_answers += response;
            m_window.reset();
        });
        finish(*visibleDialog(*m_window));
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QVERIFY(!m_window);
    }

    void windowShowsOneSheetAfterTheOther()
    {
        QFileDialog *shown = show();
        QList<std::shared_ptr<SavePanel>> waiting;
        for (const QString &name : {u"second.srt"_s, u"third.srt"_s}) {
            waiting += std::make_shared<SavePanel>();
            waiting.last()->directoryURL = QUrl::fromLocalFile(m_folder);
            waiting.last()->nameFieldStringValue = name;
            begin(waiting.last());
        }
        QCOMPARE(visibleDialog(*m_window), shown);
        finish(*shown, Qt::Key_Escape);
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel}));
        for (const auto &panel : waiting) {
            shown = visibleDialog(*m_window);
            QVERIFY(shown);
            QCOMPARE(nameField(*shown)->text(), panel->nameFieldStringValue);
            finish(*shown);
            QCOMPARE(panel->URL()->fileName(), panel->nameFieldStringValue);
        }
        QCOMPARE(m_answers.size(), 3);
        QVERIFY(!visibleDialog(*m_window));
    }

    void panelCanBeShownAgain()
    {
        finish(*show());
        QVERIFY(m_panel->URL());
        QFileDialog *again = show();
        QVERIFY(!m_panel->URL());
        finish(*again, Qt::Key_Escape);
        QVERIFY(!m_panel->URL());
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK, ModalResponse::Cancel}));
    }
};

PLOVENDIX_GUI_TEST(SavePanelTest)
#include "SavePanelTest.moc"
