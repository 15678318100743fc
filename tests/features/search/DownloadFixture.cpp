#include "DownloadFixture.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>

using namespace Qt::StringLiterals;

ExternalRequestInfo DownloadFixture::tessaly()
{
    return {u"tessaly3"_s, u"42"_s, u"Tessaly"_s};
}

base::Error DownloadFixture::refusal()
{
    return base::Error{u"Service"_s, 9, u"No more downloads today."_s};
}

void DownloadFixture::setUp()
{
    m_workspace = FakeWorkspace::install();
    m_files = FakeFileManager::install(m_sandbox.path(u"Movies"_s));
    for (const QString &folder : {u"Movies"_s, u"videos"_s, u"downloads"_s}) {
        QDir(m_sandbox.path(folder)).removeRecursively();
        QDir().mkpath(m_sandbox.path(folder));
    }
    m_video = QUrl::fromLocalFile(m_sandbox.writeFile(u"videos/a.b.mp4"_s, "video"));
    m_view = std::make_unique<MainViewFixture>();
    m_sandbox.clearPrintedLines();
}

void DownloadFixture::tearDown()
{
    m_view.reset();
    FileManager::setDefaultManager({});
    Workspace::setSharedWorkspace({});
}

QUrl DownloadFixture::downloadedFile(const QString &name) const
{
    return QUrl::fromLocalFile(m_sandbox.writeFile(u"downloads/"_s + name, "subtitle"));
}

QFileDialog *DownloadFixture::sheet() const
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *dialog = qobject_cast<QFileDialog *>(widget); dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

void DownloadFixture::searchVideo(const std::optional<ExternalRequestInfo> &request) const
{
    m_view->controller->searchForFile(m_video, request);
    auto result = std::make_shared<Subtitle>();
    result->subFileName = u"A"_s;
    result->subLanguageID = u"POB"_s;
    result->subFormat = u"SRT"_s;
    m_view->service->finishLast(answerWith({result}));
    m_view->turn();
}

void DownloadFixture::downloadFirst() const
{
    m_view->table()->selectRow(0);
    QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton);
}

void DownloadFixture::finishWith(const QUrl &file) const
{
    m_view->service->finishDownload(m_view->service->downloadCount() - 1, file);
    m_view->turn();
}

void DownloadFixture::answerSheet(bool accept) const
{
    QFileDialog *dialog = sheet();
    QVERIFY(dialog);
    if (accept)
        QTest::keyClick(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
    else
        QTest::keyClick(dialog, Qt::Key_Escape);
    m_view->turn();
}
