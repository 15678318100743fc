#include "DownloadFixture.h"

#include <ui/controls/Label.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>

using namespace Qt::StringLiterals;

void DownloadTestCase::init()
{
    m_workspace = FakeWorkspace::install();
    m_files = FakeFileManager::install(m_sandbox.path(u"Movies"_s));
    for (const QString &folder : {u"Movies"_s, u"videos"_s, u"downloads"_s}) {
        QDir(m_sandbox.path(folder)).removeRecursively();
        QDir().mkpath(m_sandbox.path(folder));
    }
    m_video = QUrl::fromLocalFile(m_sandbox.writeFile(u"videos/a.b.mp4"_s, "video"));
    MainViewTest::init();
}

void DownloadTestCase::cleanup()
{
    MainViewTest::cleanup();
    FileManager::setDefaultManager({});
    Workspace::setSharedWorkspace({});
}

QUrl DownloadTestCase::downloadedFile(const QString &name) const
{
    return QUrl::fromLocalFile(m_sandbox.writeFile(u"downloads/"_s + name, "subtitle"));
}

void DownloadTestCase::searchVideo(const std::optional<ExternalRequestInfo> &request) const
{
    m_view->controller->searchForFile(m_video, request);
    auto result = std::make_shared<Subtitle>();
    result->subFileName = u"A"_s;
    result->subLanguageID = u"POB"_s;
    result->subFormat = u"SRT"_s;
    m_view->answer(answerWith({result}));
}

void DownloadTestCase::downloadFirst() const
{
    m_view->table()->selectRow(0);
    QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton);
}

void DownloadTestCase::finishWith(const Result<QUrl> &file) const
{
    m_view->service->finishDownload(m_view->service->downloadCount() - 1, file);
    m_view->turn();
}

QUrl DownloadTestCase::downloadVideo(const std::optional<ExternalRequestInfo> &request) const
{
    searchVideo(request);
    downloadFirst();
    const QUrl file = downloadedFile();
    finishWith(file);
    return file;
}

QFileDialog *DownloadTestCase::sheet() const
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *dialog = qobject_cast<QFileDialog *>(widget); dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

QLineEdit *DownloadTestCase::sheetName() const
{
    return sheet()->findChild<QLineEdit *>(u"fileNameEdit"_s);
}

void DownloadTestCase::answerSheet(bool accept) const
{
    QVERIFY(sheet());
    if (accept)
        QTest::keyClick(sheetName(), Qt::Key_Return);
    else
        QTest::keyClick(sheet(), Qt::Key_Escape);
    m_view->turn();
}

QString DownloadTestCase::saveAndReadTheAlert() const
{
    return alertDuring([this] { answerSheet(true); });
}

bool DownloadTestCase::exists(const QString &path) const
{
    return QFile::exists(m_sandbox.path(path));
}

QString DownloadTestCase::delivered() const
{
    const auto *label = m_view->child<ui::Label>("deliveryLabel");
    return label->isVisible() ? label->text() : QString();
}
