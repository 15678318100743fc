#include "DownloadFixture.h"

#include <platform/Label.h>

#include <QFile>
#include <QFileDialog>

using namespace Qt::StringLiterals;

class CompanionSendTest : public QObject, private DownloadFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void requestSendsToTheCompanion();
    void optionAloneForcesTheSheet();
    void optionWithShiftSends();
    void refusedReplyFallsBackToTheSheet();
    void noMoviesFolderFallsBackToTheSheet();
    void saveAsAlwaysShowsTheSheet();
};

void CompanionSendTest::requestSendsToTheCompanion()
{
    searchVideo(tessaly());
    downloadFirst();
    finishWith(downloadedFile());
    QVERIFY(!sheet());
    const QString delivered = m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s);
    QVERIFY(QFile::exists(delivered));
    QCOMPARE(m_workspace->opened.size(), 1);
    QCOMPARE(m_workspace->opened.first().scheme(), u"tessaly3"_s);
    QCOMPARE(m_workspace->opened.first().host(), u"plovendix-file"_s);
    QCOMPARE(m_view->child<Label>("deliveryLabel")->text(), u"Sent to Tessaly"_s);
    QVERIFY(!m_view->controller->isDownloading());
}

void CompanionSendTest::optionAloneForcesTheSheet()
{
    searchVideo(tessaly());
    m_view->table()->selectRow(0);
    m_view->table()->setFocus();
    m_view->press(Qt::Key_Return, Qt::AltModifier);
    QCOMPARE(m_view->service->downloadCount(), 1);
    finishWith(downloadedFile());
    QVERIFY(sheet());
    QVERIFY(m_workspace->opened.isEmpty());
}

void CompanionSendTest::optionWithShiftSends()
{
    searchVideo(tessaly());
    m_view->table()->selectRow(0);
    m_view->table()->setFocus();
    m_view->press(Qt::Key_Return, Qt::AltModifier | Qt::ShiftModifier);
    QCOMPARE(m_view->service->downloadCount(), 1);
    finishWith(downloadedFile());
    QVERIFY(!sheet());
    QCOMPARE(m_workspace->opened.size(), 1);
}

void CompanionSendTest::refusedReplyFallsBackToTheSheet()
{
    m_workspace->accepts = false;
    searchVideo(tessaly());
    downloadFirst();
    finishWith(downloadedFile());
    QVERIFY(sheet());
    // The file has been moved already, so accepting the sheet reports that it is gone.
    const QString shown = alertDuring([this] { answerSheet(true); });
    QVERIFY(!shown.isEmpty());
    QVERIFY(QFile::exists(m_sandbox.path(u"Movies/Plovendix/A.pob.srt"_s)));
}

void CompanionSendTest::noMoviesFolderFallsBackToTheSheet()
{
    m_files->folder.clear();
    searchVideo(tessaly());
    downloadFirst();
    const QString shown = alertDuring([this] { finishWith(downloadedFile()); });
    QVERIFY(shown.isEmpty());
    QVERIFY(sheet());
    QVERIFY(QFile::exists(m_sandbox.path(u"downloads/A.srt"_s)));
}

void CompanionSendTest::saveAsAlwaysShowsTheSheet()
{
    searchVideo(tessaly());
    m_view->table()->selectRow(0);
    m_view->controller->saveSelectedSubtitleAs();
    finishWith(downloadedFile());
    QVERIFY(sheet());
    QVERIFY(m_workspace->opened.isEmpty());
}

QTEST_MAIN(CompanionSendTest)
#include "CompanionSendTest.moc"
