#include "ServicesPaneFixture.h"

#include <base/Bundle.h>
#include <base/LocalizedString.h>
#include <model/FolderImporting.h>
#include <tests/support/FakeFileManager.h>
#include <tests/support/TestMain.h>

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

using namespace Qt::StringLiterals;
using Phase = FolderImportState::Phase;

namespace
{
/// An import that is as far as the test says.
class ScriptedImport final : public FolderImporting
{
public:
    const FolderImportState &state() const override { return m_state; }
    void start(const QString &folder) override
    {
        started += folder;
        become({Phase::Counting, folder});
    }
    void stop() override
    {
        ++stops;
        m_state.phase = Phase::Stopping;
        Q_EMIT changed();
    }
    void become(const FolderImportState &state)
    {
        m_state = state;
        Q_EMIT changed();
    }

    QStringList started;
    int stops = 0;

private:
    FolderImportState m_state;
};

FolderImportState reading(qint64 files, qint64 total, qint64 added, const QString &current)
{
    return {Phase::Reading, u"/films"_s, total, files, added, 0, 0, current};
}
} // namespace

/// Adding a folder to the catalogue in the Services pane, used as a person does.
class PrefsFolderTest final : public QObject
{
    Q_OBJECT

private:
    Sandbox m_sandbox;
    std::unique_ptr<ServicesPaneFixture> m_fixture;
    std::shared_ptr<ScriptedImport> m_import;
    int m_turn = 0;

    template <class Type>
    Type *child(const char *name) const
    {
        return m_fixture->child<Type>(name);
    }
    QPushButton *addButton() const { return child<QPushButton>("addFolderButton"); }
    QPushButton *cancelButton() const { return child<QPushButton>("cancelImportButton"); }
    QProgressBar *line() const { return child<QProgressBar>("importLine"); }
    QWidget *wheel() const { return child<QWidget>("importIndicator"); }
    QLabel *label() const { return child<QLabel>("importLabel"); }
    QFileDialog *dialog() const
    {
        for (auto *shown : m_fixture->window->findChildren<QFileDialog *>()) {
            if (shown->isVisible())
                return shown;
        }
        return nullptr;
    }
    /// Opens the dialogue with the keyboard; where it starts.
    QString folderOffered() const
    {
        addButton()->setFocus();
        QTest::keyClick(addButton(), Qt::Key_Space);
        return dialog() ? dialog()->directory().absolutePath() : QString();
    }
    void choose(const QString &folder) const
    {
        auto *field = dialog()->findChild<QLineEdit *>(u"fileNameEdit"_s);
        field->setText(folder);
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_VERIFY(!dialog());
    }
    QString makeFolder(const QString &name) const
    {
        QDir().mkpath(m_sandbox.path(name));
        return QDir(m_sandbox.path(name)).absolutePath();
    }

private Q_SLOTS:
    void initTestCase() { registerPreferencesScenes(); }
    void init()
    {
        m_fixture = std::make_unique<ServicesPaneFixture>(m_sandbox, ++m_turn);
        m_import = std::make_shared<ScriptedImport>();
        FolderImporting::setShared(m_import);
    }
    void cleanup()
    {
        m_fixture.reset();
        FolderImporting::setShared({});
        FileManager::setDefaultManager({});
        Bundle::main().setPreferredLocalizations({});
    }

    void folderIsAskedForFromWhereTheLastOneWas()
    {
        const QString videos = makeFolder(u"videos"_s);
        const QString folder = makeFolder(u"elsewhere/subtitles"_s);
        FakeFileManager::install(videos);
        m_fixture->open();
        QCOMPARE(folderOffered(), videos);
        QTest::keyClick(dialog(), Qt::Key_Escape);
        QTRY_VERIFY(!dialog());
        QVERIFY(m_import->started.isEmpty());
        QCOMPARE(folderOffered(), videos);
        choose({}); // the folder that is shown
        QCOMPARE(m_import->started, QStringList{videos});
        m_import->become({Phase::Finished, videos});
        folderOffered();
        choose(folder);
        m_import->become({Phase::Finished, folder});
        QCOMPARE(m_import->started, (QStringList{videos, folder}));
        QCOMPARE(folderOffered(), folder);
        QTest::keyClick(dialog(), Qt::Key_Escape);
        QTRY_VERIFY(!dialog());
        QVERIFY(QDir().rmdir(folder));
        QCOMPARE(folderOffered(), videos);
        m_fixture->window.reset(); // and its dialogue
        m_fixture->pane.reset();
        QCOMPARE(m_import->started.size(), 2);
    }

    void countingTurnsTheWheelAndReadingFillsTheLine()
    {
        m_fixture->open();
        QVERIFY(!wheel()->isVisible() && !line()->isVisible() && !cancelButton()->isVisible());
        m_import->become({Phase::Counting, u"/films"_s, 1234});
        QVERIFY(wheel()->isVisible() && !line()->isVisible());
        QVERIFY(cancelButton()->isVisible() && !addButton()->isVisible());
        QCOMPARE(label()->text(), u"Subtitle files found: "_s + QLocale().toString(1234));
        m_import->become(reading(5, 20, 3, u"a/Harbour.srt"_s));
        QVERIFY(!wheel()->isVisible() && line()->isVisible());
        QCOMPARE(4 * line()->value(), line()->maximum());
        QCOMPARE(label()->text(), u"5 of 20 files, subtitles added: 3\na/Harbour.srt"_s);
        m_import->become(reading(25, 20, 23, u"new.srt"_s)); // more have come meanwhile
        QCOMPARE(line()->value(), line()->maximum());
        QVERIFY(label()->text().startsWith(u"25 of 25 files"_s));
        const QString name = u"folder/"_s.repeated(40) + u"Harbour.srt"_s;
        m_import->become(reading(1, 2, 0, name));
        const QString shown = label()->text().section(u'\n', 1);
        QVERIFY2(shown.contains(u'…') && shown.endsWith(u"Harbour.srt"_s), qPrintable(shown));
        QVERIFY(label()->fontMetrics().horizontalAdvance(shown) <= label()->width());
        QCOMPARE(label()->toolTip(), name);
        m_fixture->accounts->place = {u"/data/catalogue.sqlite"_s, 7'000'000, true};
        m_import->become({Phase::Finished, u"/films"_s, 1, 1, 1});
        QCOMPARE(child<QLabel>("catalogueSizeLabel")->text(), QLocale().formattedDataSize(7'000'000));
    }

    void keyboardGoesWithTheButtons()
    {
        m_fixture->open();
        addButton()->setFocus();
        m_import->start(u"/films"_s);
        QVERIFY(cancelButton()->hasFocus());
        QTest::keyClick(cancelButton(), Qt::Key_Space);
        QCOMPARE(m_import->stops, 1);
        QCOMPARE(label()->text(), u"Stopping…"_s);
        m_import->become({Phase::Stopped, u"/films"_s, 20, 5, 3});
        QVERIFY(addButton()->hasFocus());
        child<QLineEdit>("keyField")->setFocus();
        m_import->start(u"/films"_s);
        QVERIFY(child<QLineEdit>("keyField")->hasFocus());
    }

    void endIsSaidQuietly_data()
    {
        QTest::addColumn<FolderImportState>("state");
        QTest::addColumn<QString>("sentence");
        FolderImportState state{Phase::Finished, u"/films/Subs"_s, 20, 20, 20};
        QTest::newRow("all new") << state << u"Subtitles added: 20."_s;
        state.added = 0;
        state.known = 20;
        QTest::newRow("all known") << state << u"Subtitles added: 0. Known already: 20."_s;
        state.added = 3;
        state.refused = 2;
        state.firstRefusal = u"“a.srt” is no subtitle."_s;
        QTest::newRow("refused")
            << state
            << u"Subtitles added: 3. Known already: 20. Could not be read: 2. “a.srt” is no "
               "subtitle."_s;
        QTest::newRow("nothing there") << FolderImportState{Phase::Finished, u"/films/Subs"_s}
                                       << u"There are no subtitle files in “Subs”."_s;
        state.phase = Phase::Stopped;
        QTest::newRow("stopped") << state
                                 << u"Subtitles added: 3. Add the folder again to go on from here."_s;
        state.phase = Phase::Failed;
        state.failure = u"The disk is full."_s;
        QTest::newRow("failed") << state << u"The disk is full. Subtitles added: 3."_s;
        state.added = 0;
        QTest::newRow("failed at once") << state << u"The disk is full."_s;
    }
    void endIsSaidQuietly()
    {
        QFETCH(const FolderImportState, state);
        m_fixture->open();
        m_import->start(u"/films"_s);
        m_import->become(state);
        QTEST(label()->text(), "sentence");
        QVERIFY(addButton()->isVisible() && !cancelButton()->isVisible());
        QVERIFY(!wheel()->isVisible() && !line()->isVisible());
        QVERIFY(label()->toolTip().isEmpty());
    }

    void paneMadeMeanwhileShowsIt()
    {
        m_import->become(reading(5, 20, 3, u"Harbour.srt"_s));
        m_fixture->open();
        QVERIFY(cancelButton()->isVisible() && line()->isVisible() && !addButton()->isVisible());
        m_fixture->window.reset();
        m_fixture->pane.reset();
        m_import->become({Phase::Finished, u"/films"_s, 20, 20, 18}); // nobody looks
        m_fixture->open();
        QVERIFY(addButton()->isVisible());
        QCOMPARE(label()->text(), u"Subtitles added: 18."_s);
    }

    void withoutAnImporterNothingCanBeAdded()
    {
        FolderImporting::setShared({});
        m_fixture->open();
        QVERIFY(addButton()->isVisible() && !addButton()->isEnabled());
    }

    void sentencesFitInEveryLanguage_data()
    {
        QTest::addColumn<QString>("language");
        for (const char *language : {"en", "de", "fr", "es", "pt-BR", "ja"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }
    void sentencesFitInEveryLanguage()
    {
        QFETCH(const QString, language);
        Bundle::main().setPreferredLocalizations({language});
        m_fixture->open();
        m_fixture->window->setContentSize({560, 664}); // as the preferences do
        const auto fits = [this] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            const QRect place(label()->mapTo(m_fixture->pane->view(), QPoint(0, 0)), label()->size());
            return label()->heightForWidth(label()->width()) <= label()->height() &&
                   m_fixture->pane->view()->rect().contains(place);
        };
        FolderImportState state{Phase::Finished, u"/films"_s, 200'000, 200'000, 123'456, 54'321, 22'223};
        state.firstRefusal = String::localize(u"“%@” is damaged or of an unknown kind."_s)
                                 .replace("%@"_L1, u"deep/Harbour Lights 2019 1080p.zip"_s);
        m_import->become(state);
        QVERIFY2(fits(), qPrintable(label()->text()));
        state.phase = Phase::Failed;
        state.failure =
            String::localize(
                u"Another import is writing to the subtitle catalogue “%@”. Try again when it has ended."_s)
                .replace("%@"_L1, u"/home/somebody/.local/share/Plovendix/catalogue.sqlite"_s);
        m_import->become(state);
        QVERIFY2(fits(), qPrintable(label()->text()));
        m_import->become(reading(123'456, 200'000, 100'000, u"deep/Harbour.Lights.srt"_s));
        QVERIFY2(fits(), qPrintable(label()->text()));
        QVERIFY(cancelButton()->sizeHint().width() <= cancelButton()->width());
    }
};

PLOVENDIX_GUI_TEST(PrefsFolderTest)
#include "PrefsFolderTest.moc"
