#include <platform/Bundle.h>
#include <platform/FileManager.h>
#include <platform/SavePanel.h>
#include <platform/UserDefaults.h>
#include <platform/Window.h>
#include <support/Sandbox.h>

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace
{
/// Knows one Movies folder, or none.
class MoviesAt : public FileManager
{
public:
    explicit MoviesAt(std::optional<QUrl> movies) : m_movies(std::move(movies)) {}
    std::optional<QUrl> moviesFolder() const override { return m_movies; }

private:
    std::optional<QUrl> m_movies;
};

QFileDialog *visibleDialog(const QWidget &window)
{
    for (auto *dialog : window.findChildren<QFileDialog *>()) {
        if (dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

QLineEdit *nameField(const QFileDialog &dialog)
{
    return dialog.findChild<QLineEdit *>(u"fileNameEdit"_s);
}
} // namespace

class SavePanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = m_sandbox.path(QLatin1String(QTest::currentTestFunction()));
        QDir(m_folder).removeRecursively();
        QDir().mkpath(m_folder);
        m_movies = makeFolder(u"Videos"_s);
        UserDefaults::setStandardFile(m_folder + u"/settings/Plovendix.conf"_s);
        FileManager::setDefaultManager(std::make_shared<MoviesAt>(QUrl::fromLocalFile(m_movies)));
        m_window = std::make_unique<Window>();
        m_window->show();
        m_panel = std::make_shared<SavePanel>();
        m_answers.clear();
    }
    void cleanup()
    {
        m_panel.reset();
        m_window.reset();
        FileManager::setDefaultManager(nullptr);
    }

    void personSavesUnderTheSuggestedName()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QVERIFY(!m_panel->URL());
        QFileDialog *dialog = show();
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(nameField(*dialog)->text(), u"Movie.en.srt"_s);
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
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

    void sheetIsModalToItsWindowAndSpeaksOurWords()
    {
        m_panel->title = u"Save"_s;
        QFileDialog *dialog = show();
        QCOMPARE(dialog->windowTitle(), u"Save"_s);
        QCOMPARE(dialog->windowModality(), Qt::WindowModal);
        QCOMPARE(dialog->parentWidget(), m_window.get());
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QVERIFY(dialog->testOption(QFileDialog::DontUseNativeDialog));
        QCOMPARE(dialog->labelText(QFileDialog::Accept), Bundle::main().localizedString(u"Save"_s));
        QCOMPARE(dialog->labelText(QFileDialog::Reject), Bundle::main().localizedString(u"Cancel"_s));
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
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel}));
        QVERIFY(!m_panel->URL());
        QTRY_VERIFY(m_window->findChildren<QFileDialog *>().isEmpty());
        QCOMPARE(m_answers.size(), 1);
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
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QCOMPARE(m_panel->URL(), QUrl::fromLocalFile(existing.fileName()));
    }

    void oddNamesAreShownAndKept_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a newline") << u"one\ntwo.en.srt"_s;
        QTest::newRow("a direction mark") << u"abc\u202Etrs.exe.en.srt"_s;
        QTest::newRow("quotes") << u"The \"best\" movie.en.srt"_s;
        QTest::newRow("quotes around") << u"\"a\" \"b\""_s;
        QTest::newRow("a tilde") << u"~someone.en.srt"_s;
        QTest::newRow("spaces") << u"  Movie  .en.srt "_s;
        QTest::newRow("per cent") << u"100%25 #1?.en.srt"_s;
        QTest::newRow("a backslash") << u"a\\b.en.srt"_s;
        QTest::newRow("wildcards") << u"*.[srt]"_s;
        QTest::newRow("a hidden file") << u".en.srt"_s;
        QTest::newRow("another script") << u"Фильм 映画 🎬.en.srt"_s;
        QTest::newRow("no extension") << u"Movie"_s;
    }
    void oddNamesAreShownAndKept()
    {
        QFETCH(QString, name);
        // Neighbours that a sloppy reading of the name would pick.
        for (const QString &neighbour : {u"a"_s, u"best"_s, u"Movie.en.srt"_s})
            QVERIFY(QFile(m_folder + u'/' + neighbour).open(QIODevice::WriteOnly));
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = name;
        QFileDialog *dialog = show();
        QCOMPARE(nameField(*dialog)->text(), name);
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
        QCOMPARE(m_panel->URL()->toLocalFile(), m_folder + u'/' + name);
    }

    void suggestedNameCannotLeadOutOfTheFolder()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"../../evil.en.srt"_s;
        QFileDialog *dialog = show();
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_panel->URL()->toLocalFile(), m_folder + u"/.._.._evil.en.srt"_s);
    }

    void opensWhereTheDirectoryURLSays_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a folder") << u"movies"_s << u"movies"_s;
        QTest::newRow("a folder with a slash") << u"movies/"_s << u"movies"_s;
        QTest::newRow("a file") << u"movies/Movie.mkv"_s << u"movies"_s;
        QTest::newRow("a file without extension") << u"movies/Movie"_s << u"movies"_s;
        QTest::newRow("a file that has gone") << u"movies/Gone.mkv"_s << u"movies"_s;
        QTest::newRow("a folder that has gone") << u"movies/gone"_s << u"Videos"_s;
        QTest::newRow("a file in a folder that has gone") << u"gone/Movie.mkv"_s << u"Videos"_s;
        QTest::newRow("an odd folder") << u"odd # %20 ü\nfolder/Movie.mkv"_s << u"odd # %20 ü\nfolder"_s;
    }
    void opensWhereTheDirectoryURLSays()
    {
        QFETCH(QString, place);
        QFETCH(QString, expected);
        makeFolder(u"movies"_s);
        makeFolder(u"odd # %20 ü\nfolder"_s);
        for (const QString &file :
             {u"movies/Movie.mkv"_s, u"movies/Movie"_s, u"odd # %20 ü\nfolder/Movie.mkv"_s})
            QVERIFY(QFile(m_folder + u'/' + file).open(QIODevice::WriteOnly));
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder + u'/' + place);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_panel->URL()->toLocalFile(), m_folder + u'/' + expected + u"/Movie.en.srt"_s);
    }

    void otherURLsThanFilesMeanTheDefaultFolder()
    {
        m_panel->directoryURL = QUrl(u"https://server.example/movies/Movie.mkv"_s);
        QCOMPARE(show()->directory().absolutePath(), m_movies);
    }

    void folderUsedLastIsTheDefault()
    {
        const QString last = makeFolder(u"used last"_s);
        m_panel->directoryURL = QUrl::fromLocalFile(last);
        QFileDialog *dialog = show();
        type(*dialog, u"first.srt"_s);
        QCOMPARE(m_answers.size(), 1);

        m_panel = std::make_shared<SavePanel>();
        QFileDialog *next = show();
        QCOMPARE(next->directory().absolutePath(), last);
        next->close();
        QVERIFY(QDir(last).removeRecursively());
        m_panel = std::make_shared<SavePanel>();
        QCOMPARE(show()->directory().absolutePath(), m_movies);
    }

    void withoutAMoviesFolderItIsHome_data()
    {
        QTest::addColumn<bool>("named");
        QTest::newRow("none named") << false;
        QTest::newRow("the one named is gone") << true;
    }
    void withoutAMoviesFolderItIsHome()
    {
        QFETCH(bool, named);
        const auto gone = named ? std::optional(QUrl::fromLocalFile(m_folder + u"/gone"_s)) : std::nullopt;
        FileManager::setDefaultManager(std::make_shared<MoviesAt>(gone));
        QVERIFY(QDir::homePath() != QDir::currentPath());
        QCOMPARE(show()->directory().absolutePath(), QDir::homePath());
    }

    void rememberedFolderThatIsNoPathIsIgnored()
    {
        UserDefaults::standard().setObject(u"lastSaveFolder"_s, u"."_s);
        QCOMPARE(show()->directory().absolutePath(), m_movies);
    }

    void typingAFolderGoesThereAndKeepsTheName_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("its name") << u"inner"_s;
        QTest::newRow("its name with a slash") << u"inner/"_s;
        QTest::newRow("its path") << u"./inner/../inner"_s;
    }
    void typingAFolderGoesThereAndKeepsTheName()
    {
        QFETCH(QString, typed);
        const QString inner = makeFolder(u"inner"_s);
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        m_panel->nameFieldStringValue = u"Movie.en.srt"_s;
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QVERIFY(dialog->isVisible());
        QVERIFY(m_answers.isEmpty());
        QCOMPARE(dialog->directory().absolutePath(), inner);
        QCOMPARE(nameField(*dialog)->text(), u"Movie.en.srt"_s);
        QTest::keyClick(nameField(*dialog), Qt::Key_Return);
        QCOMPARE(m_panel->URL()->toLocalFile(), inner + u"/Movie.en.srt"_s);
        QCOMPARE(UserDefaults::standard().string(u"lastSaveFolder"_s), inner);
    }

    void personTypesAPath_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("relative") << u"inner/a.srt"_s << m_sandbox.path(u"personTypesAPath/inner/a.srt"_s);
        QTest::newRow("upwards") << u"inner/../a.srt"_s << m_sandbox.path(u"personTypesAPath/a.srt"_s);
        QTest::newRow("absolute") << m_sandbox.path(u"a.srt"_s) << m_sandbox.path(u"a.srt"_s);
        QTest::newRow("at home") << u"~/a.srt"_s << QString(QDir::homePath() + u"/a.srt"_s);
    }
    void personTypesAPath()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        makeFolder(u"inner"_s);
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QCOMPARE(m_panel->URL(), QUrl::fromLocalFile(expected));
    }

    void nameThatIsNoneIsNotAccepted_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("nothing") << QString();
        QTest::newRow("a folder that is not there") << u"missing/"_s;
    }
    void nameThatIsNoneIsNotAccepted()
    {
        QFETCH(QString, typed);
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        QFileDialog *dialog = show();
        type(*dialog, typed);
        QVERIFY(dialog->isVisible());
        QVERIFY(m_answers.isEmpty());
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
        QCOMPARE(m_answers.size(), 1);
    }

    void panelKeepsItselfUntilItIsAnswered()
    {
        m_panel->directoryURL = QUrl::fromLocalFile(m_folder);
        QFileDialog *dialog = show();
        const std::weak_ptr<SavePanel> panel = m_panel;
        m_panel.reset();
        QVERIFY(!panel.expired());
        type(*dialog, u"a.srt"_s);
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
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
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK}));
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
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel}));

        QFileDialog *next = visibleDialog(*m_window);
        QVERIFY(next && next != first);
        QCOMPARE(nameField(*next)->text(), u"second.srt"_s);
        QTest::keyClick(nameField(*next), Qt::Key_Return);
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::Cancel, ModalResponse::OK}));
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
        QCOMPARE(m_answers, QList<ModalResponse>({ModalResponse::OK, ModalResponse::Cancel}));
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

private:
    QString makeFolder(const QString &name) const
    {
        QDir(m_folder).mkpath(name);
        return m_folder + u'/' + name;
    }

    void begin(const std::shared_ptr<SavePanel> &panel)
    {
        panel->beginSheetModalForWindow(m_window.get(),
                                        [this](ModalResponse response) { m_answers += response; });
    }

    QFileDialog *show()
    {
        begin(m_panel);
        return visibleDialog(*m_window);
    }

    /// As a person does: all that is there goes, the new name comes, Return.
    static void type(const QFileDialog &dialog, const QString &text)
    {
        nameField(dialog)->selectAll();
        QTest::keyClick(nameField(dialog), Qt::Key_Delete);
        QTest::keyClicks(nameField(dialog), text);
        QTest::keyClick(nameField(dialog), Qt::Key_Return);
    }

    Sandbox m_sandbox;
    QString m_folder;
    QString m_movies;
    std::unique_ptr<Window> m_window;
    std::shared_ptr<SavePanel> m_panel;
    QList<ModalResponse> m_answers;
};

QTEST_MAIN(SavePanelTest)
#include "SavePanelTest.moc"
