#include "DownloadFixture.h"

#include <features/search/DownloadPrompt.h>
#include <tests/support/TestMain.h>

using namespace Qt::StringLiterals;

namespace
{
/// A prompt that comes up, or does not, and counts what it is told.
struct ScriptedPrompt final : DownloadPrompt
{
    bool presentBeforeDownload(MainViewController &controller) override
    {
        ++asked;
        presenter = &controller;
        return comesUp;
    }
    void noteDelivery() override { ++deliveries; }

    bool comesUp = true;
    int asked = 0;
    int deliveries = 0;
    MainViewController *presenter = nullptr;
};
} // namespace

/// What the main view leaves to the prompt in front of its downloads.
class DownloadPromptTest final : public QObject, private DownloadFixture
{
    Q_OBJECT

private:
    std::unique_ptr<ScriptedPrompt> m_prompt;

private Q_SLOTS:
    void init()
    {
        setUp();
        m_prompt = std::make_unique<ScriptedPrompt>();
        m_view->controller->setDownloadPrompt(m_prompt.get());
    }
    void cleanup()
    {
        tearDown();
        m_prompt.reset();
    }

    void aPromptThatComesUpTakesTheDownloadOver()
    {
        searchVideo();
        downloadFirst();
        QCOMPARE(m_prompt->asked, 1);
        QCOMPARE(m_prompt->presenter, m_view->controller.get());
        QCOMPARE(m_view->service->downloadCount(), 0);
        QVERIFY(!m_view->controller->isDownloading());
        m_view->press(Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(m_prompt->asked, 2);
        QCOMPARE(m_view->service->downloadCount(), 0);
    }

    void aPromptThatDoesNotComeUpLeavesTheDownload()
    {
        m_prompt->comesUp = false;
        searchVideo();
        downloadFirst();
        QCOMPARE(m_prompt->asked, 1);
        QCOMPARE(m_view->service->downloadCount(), 1);
    }

    void theOperationsThemselvesAreNotPrompted()
    {
        searchVideo();
        m_view->table()->selectRow(0);
        m_view->controller->downloadSelectedSubtitle();
        m_view->controller->saveSelectedSubtitleAs();
        QCOMPARE(m_prompt->asked, 0);
        QCOMPARE(m_view->service->downloadCount(), 2);
    }

    void nothingIsPromptedWhereNothingWouldBeDownloaded()
    {
        m_view->controller->download(nullptr);
        m_view->showResults(2);
        m_view->controller->download(nullptr);
        QCOMPARE(m_prompt->asked, 0);
    }

    void nothingIsPromptedWhileTheSheetIsForced()
    {
        searchVideo(tessaly());
        m_view->table()->selectRow(0);
        QTest::mouseClick(m_view->downloadButton(), Qt::LeftButton, Qt::AltModifier);
        QCOMPARE(m_prompt->asked, 0);
        QCOMPARE(m_view->service->downloadCount(), 1);
    }

    void whatReachedThePersonIsADelivery()
    {
        m_prompt->comesUp = false;
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        QCOMPARE(m_prompt->deliveries, 0);
        answerSheet(true);
        QCOMPARE(m_prompt->deliveries, 1);
        searchVideo(tessaly());
        downloadFirst();
        finishWith(downloadedFile());
        QCOMPARE(m_prompt->deliveries, 2);
    }

    void whatDidNotIsNone()
    {
        m_prompt->comesUp = false;
        searchVideo();
        downloadFirst();
        finishWith(downloadedFile());
        answerSheet(false);
        downloadFirst();
        m_view->service->finishDownload(1, refusal());
        QCOMPARE(alertDuring([this] { m_view->turn(); }), refusal().localizedDescription);
        QCOMPARE(m_prompt->deliveries, 0);
    }
};

PLOVENDIX_GUI_TEST(DownloadPromptTest)
#include "DownloadPromptTest.moc"
