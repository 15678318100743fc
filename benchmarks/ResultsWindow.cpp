#include "ResultsWindow.h"

#include <base/Bundle.h>
#include <base/MainQueue.h>
#include <features/search/MainViewController.h>
#include <ui/scenes/TableView.h>
#include <ui/style/Appearance.h>
#include <ui/window/ViewController.h>
#include <ui/window/Window.h>

namespace
{
using namespace Qt::StringLiterals;

constexpr QSize ContentSize(760, 640); // the program's own
} // namespace

ResultsWindow::ResultsWindow()
{
    Bundle::setMainFolder(QStringLiteral(PLOVENDIX_RESOURCES));
    MainQueue::shared();
    Appearance::shared().install();
    registerSearchScenes();
    m_controller = ViewController::make<MainViewController>();
    m_window = std::make_unique<ui::Window>();
    m_window->setFullSizeContentView(true);
    m_window->setTitlebarAppearsTransparent(true);
    m_window->setContentSize(ContentSize);
    m_window->setContentViewController(m_controller);
    m_window->show();
}

ResultsWindow::~ResultsWindow()
{
    m_controller.reset();
    m_window.reset();
    MainQueue::shared().clear();
}

void ResultsWindow::showResults(const QList<SubtitlePtr> &subtitles)
{
    m_controller->searchForText(u"anything"_s, std::nullopt);
    m_service->finishLast(answerWith(subtitles));
    MainQueue::shared().runUntilIdle();
}

TableView &ResultsWindow::table() const
{
    return *m_window->findChild<TableView *>(u"tableView"_s);
}

QList<SubtitlePtr> ResultsWindow::results(int count, int first)
{
    static const QStringList formats{u"srt"_s, u"sub"_s, u"ass"_s, u"vtt"_s};
    QList<SubtitlePtr> subtitles;
    subtitles.reserve(count);
    for (int number = first; number < first + count; ++number) {
        auto subtitle = std::make_shared<Subtitle>();
        subtitle->subFileName = u"The.Long.Harbour.S%1E%2.1080p.WEB-DL.x264-GRP%3.srt"_s.arg(number % 9)
                                    .arg(number % 24)
                                    .arg(number);
        subtitle->languageName = u"English"_s;
        subtitle->subFormat = formats[number % formats.size()];
        subtitle->subLanguageID = u"eng"_s;
        subtitle->title = u"The Long Harbour"_s;
        subtitle->year = 1950 + number % 70;
        subtitle->framesPerSecond = 23.976;
        subtitle->downloads = number * 7;
        subtitles += subtitle;
    }
    return subtitles;
}
