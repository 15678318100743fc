#include "Output.h"
#include "ResultsWindow.h"

#include <features/search/MainViewController.h>
#include <ui/scenes/TableView.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <thread>

namespace
{
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr int RowCount = 20'000;
constexpr int Searches = 3;
constexpr auto BetweenSearches = 800ms; // fades have ended

/// Knows how long the longest event took: so long nothing else was answered.
class WatchedApplication final : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth > 0)
            return QApplication::notify(receiver, event);
        ++m_depth;
        QElapsedTimer clock;
        clock.start();
        const bool taken = QApplication::notify(receiver, event);
        m_longest = std::max(m_longest, clock.nsecsElapsed());
        --m_depth;
        return taken;
    }

    void forget() { m_longest = 0; }
    double longestMilliseconds() const { return double(m_longest) / 1e6; }

private:
    int m_depth = 0;
    qint64 m_longest = 0;
};

/// Searches again and again, each time answered by a thread of the service's own.
class Searcher final : public QObject
{
public:
    explicit Searcher(WatchedApplication &application) : m_application(application)
    {
        connect(&m_timer, &QTimer::timeout, this, &Searcher::step);
        m_timer.start(BetweenSearches);
    }

    ~Searcher() override
    {
        if (m_answering.joinable())
            m_answering.join();
    }

private:
    void step();
    void search();

    WatchedApplication &m_application;
    ResultsWindow m_window;
    QTimer m_timer;
    std::thread m_answering;
    int m_done = 0;
};

void Searcher::step()
{
    if (m_answering.joinable())
        m_answering.join();
    if (m_done == 0)
        m_application.forget(); // the window's own start
    else if (!m_window.table().isVisible() || m_window.table().numberOfRows() != RowCount)
        return QApplication::exit(1);
    if (m_done == Searches) {
        std::fprintf(measuredOutput(), "%.3f\n", m_application.longestMilliseconds());
        return QApplication::exit(0);
    }
    search();
    ++m_done;
}

void Searcher::search()
{
    m_window.controller().searchForText(u"anything"_s, std::nullopt);
    ScriptedSubtitleService &service = m_window.service();
    m_answering =
        std::thread([completion = service.takeCompletion(service.queries.size() - 1), first = m_done] {
            completion(answerWith(ResultsWindow::results(RowCount, 1 + first * RowCount)));
        });
}
} // namespace

/// Prints the longest time in milliseconds for which the main thread did one thing, while searches with
/// 20,000 results arrive and are shown. The first one counts: pictures are drawn and fonts are read then.
int main(int argc, char **argv)
{
    measuredOutput();
    WatchedApplication application(argc, argv);
    Searcher searcher(application);
    return WatchedApplication::exec();
}
