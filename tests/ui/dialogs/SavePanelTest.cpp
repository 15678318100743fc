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
    void personSavesUnderTheSuggestedName()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QVERIFY(!m_panel->URL());
        QFileDialog *dialog = show();
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(nameField(*dialog)->text(), u"Movie.en.srt"_s);
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QCOMPARE(m_panel->URL(), QUrl::fromLocalFile(m_folder + u"/Movie.en.srt"_s));
        QTRY_VERIFY(m_window->findChildren<QFileDialog *>().isEmpty());
    }

    void personTypesAnotherName()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        type(*dialog, u"other.srt"_s);
        QCOMPARE(m_panel->URL(), QUrl::fromLocalFile(m_folder + u"/other.srt"_s));
    }

    void nameIsSelectedWithoutItsExtension()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        QCOMPARE(nameField(*dialog)->selectedText(), u"Movie.en"_s);
    }

    void sheetIsModalToItsWindow()
    {
        m_panel->title = u"Save"_s;
        QFileDialog *dialog = show();
        QCOMPARE(dialog->windowTitle(), u"Save"_s);
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        QCOMPARE(dialog->parentWidget(), m_window.get());
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QVERIFY(dialog->testOption(QFileDialog::DontUseNativeDialog));
        QVERIFY(dialog->testOption(QFileDialog::DontConfirmOverwrite));
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
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        if (byClosing)
            dialog->close();
        else
            QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel}));
        QVERIFY(!m_panel->URL());
        QTRY_VERIFY(m_window->findChildren<QFileDialog *>().isEmpty());
        QTRY_COMPARE(m_answers.size(), 1);
        QVERIFY(!UserDefaults::standard().string(u"lastSaveFolder"_s));
    }

    void existingFileIsNoQuestion()
    {
        QFile existing(m_folder + u"/Movie.en.srt"_s);
        QVERIFY(existing.open(QIODevice::WriteOnly));
        existing.close();
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QVERIFY(m_window->findChildren<QMessageBox *>().isEmpty());
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QCOMPARE(m_panel->URL(), QUrl::fromLocalFile(existing.fileName()));
    }

    void panelMadeOnAnotherThreadIsShownHere()
    {
        std::thread([this] {
            m_panel = std::make_shared<SavePanel>();
            m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        }).join();
        QCOMPARE(nameField(*show())->text(), u"Movie.en.srt"_s);
    }

    void panelDroppedElsewhereAfterwardsIsNoTrouble()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        type(*show(), u"a.srt"_s);
        QTRY_VERIFY(m_window->findChildren<QFileDialog *>().isEmpty());
        QCOMPARE(m_panel.use_count(), 1L);
        std::thread([held = std::move(m_panel)]() mutable { held.reset(); }).join();
        QTRY_COMPARE(m_answers.size(), 1);
    }

    void panelKeepsItselfUntilItIsAnswered()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        QFileDialog *dialog = show();
        const std::weak_ptr<SavePanel> panel = m_panel;
        m_panel.reset();
        QVERIFY(!panel.expired());
        type(*dialog, u"a.srt"_s);
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QTRY_VERIFY(panel.expired());
    }

    void windowGoingFirstAnswersNothing()
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

    void answerMayLetTheWindowGo()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->beginSheetModalForWindow(m_window.get(), [this](ModalResponse response) {
            m_answers += response;
            m_window.reset();
        });
        type(*visibleDialog(*m_window), u"a.srt"_s);
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QVERIFY(!m_window);
    }

    void secondSheetWaitsForTheFirst()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"first.srt"_s;
        QFileDialog *first = show();
        auto second = std::make_shared<SavePanel>();
        second->directoryURL = QUrl::fromLocalFile(m_folder);
        second->nameFieldStringValue = u"second.srt"_s;
        begin(second);
        QCOMPARE(m_window->findChildren<QFileDialog *>().size(), 1);
        QCOMPARE(nameField(*first)->text(), u"first.srt"_s);
        QTest::keyClick(first, Qt::Key_Escape);
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel}));

        QFileDialog *next = visibleDialog(*m_window);
        QVERIFY(next && next != first);
        QCOMPARE(nameField(*next)->text(), u"second.srt"_s);
        QTest::keyClick(nameField(*next), Qt::Key_Return);
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel, ModalResponse::OK}));
        QCOMPARE(second->URL()->fileName(), u"second.srt"_s);
        QVERIFY(!visibleDialog(*m_window));
    }

    void panelCanBeShownAgain()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        type(*show(), u"a.srt"_s);
        QVERIFY(m_panel->URL());
        QFileDialog *again = show();
        QVERIFY(!m_panel->URL());
        QTest::keyClick(again, Qt::Key_Escape);
        QVERIFY(!m_panel->URL());
        QTRY_COMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK, ModalResponse::Cancel}));
    }

    void extensionChoicesAreOnlyStored()
    {
        QVERIFY(m_panel->extensionHidden);
        QVERIFY(!m_panel->canSelectHiddenExtension);
        m_panel->extensionHidden = false;
        m_panel->canSelectHiddenExtension = true;
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QCOMPARE(nameField(*show())->text(), u"Movie.en.srt"_s);
    }
};

PLOVENDIX_GUI_TEST(SavePanelTest)
#include "SavePanelTest.moc"
