#include "Output.h"
#include "Pairs.h"
#include "PlainList.h"
#include "ResultsWindow.h"

#include <ui/scenes/TableView.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QScrollBar>
#include <QTimer>

namespace
{
constexpr int RowCount = 100'000;
constexpr int NotchPoints = 90; // what a wheel's notch scrolls by
constexpr int FurthestPoints = 1'000'000;

/// Has the windows painted now, and not when the event loop gets to it.
void paint()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
}

template <class Reload>
auto resetting(QAbstractItemView &list, const Reload &reload)
{
    return [&list, reload](benchmark::State &state) {
        list.verticalScrollBar()->setValue(0);
        paint();
        for (const auto _ : state) {
            reload();
            list.viewport()->update();
            paint();
        }
    };
}

auto scrolling(QAbstractItemView &list)
{
    return [&list](benchmark::State &state) {
        QScrollBar *bar = list.verticalScrollBar();
        bar->setValue(0);
        paint();
        for (const auto _ : state) {
            bar->setValue(bar->value() >= FurthestPoints ? 0 : bar->value() + NotchPoints);
            paint();
        }
    };
}

int measure(int argc, char **argv, TableView &table, PlainList &plain)
{
    return runPairs(argc, argv,
                    {{.name = "list_reset",
                      .value = resetting(table, [&table] { table.reloadData(); }),
                      .floor = resetting(plain, [&plain] { plain.reload(); }),
                      .unit = benchmark::kMicrosecond},
                     {.name = "list_scroll",
                      .value = scrolling(table),
                      .floor = scrolling(plain),
                      .unit = benchmark::kMicrosecond}});
}
} // namespace

int main(int argc, char **argv)
{
    measuredOutput();
    int toolkitCount = 1;
    QApplication application(toolkitCount, argv);
    const QList<SubtitlePtr> subtitles = ResultsWindow::results(RowCount);
    ResultsWindow results;
    results.showResults(subtitles);
    PlainList plain(subtitles);
    plain.resize(results.window().contentSize());
    plain.show();
    // The window system has shown both by then, and what appears has faded in.
    QTimer::singleShot(std::chrono::seconds(1), &application, [&] {
        const bool shown = results.table().isVisible() && results.table().numberOfRows() == RowCount;
        QApplication::exit(shown ? measure(argc, argv, results.table(), plain) : 1);
    });
    return QApplication::exec();
}
