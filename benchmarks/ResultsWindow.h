#pragma once
#include <model/Subtitle.h>
#include <tests/support/scripted/ScriptedServices.h>
#include <QList>
#include <memory>

class MainViewController;
class TableView;
namespace ui
{
class Window;
}

/// The main window's content in a separate window, as the program shows it, with a service that answers
/// when told.
class ResultsWindow final
{
public:
    ResultsWindow();
    ~ResultsWindow();
    ResultsWindow(const ResultsWindow &) = delete;
    ResultsWindow &operator=(const ResultsWindow &) = delete;

    /// Shows these results at once.
    void showResults(const QList<SubtitlePtr> &subtitles);
    TableView &table() const;
    ui::Window &window() const { return *m_window; }
    MainViewController &controller() const { return *m_controller; }
    ScriptedSubtitleService &service() const { return *m_service; }

    /// Results as services give them: of many films, in several formats, `first` and those after it.
    static QList<SubtitlePtr> results(int count, int first = 1);

private:
    std::shared_ptr<ScriptedSubtitleService> m_service = ScriptedSubtitleService::install();
    std::shared_ptr<ScriptedMetadataService> m_metadata = ScriptedMetadataService::install();
    std::unique_ptr<ui::Window> m_window;
    std::shared_ptr<MainViewController> m_controller;
};
