#include "MainWindowController.h"
#include "Program.h"
#include "ServiceInstallation.h"

#include <base/StandardOutput.h>
#include <features/search/MainViewController.h>
#include <ui/scenes/TableView.h>
#include <ui/views/ImageView.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include <cstdio>

namespace
{
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

constexpr auto LookInterval = 50ms;
constexpr auto StepLimit = 30s;
constexpr auto PosterLimit = 3s;   // a film without a poster is not an error
constexpr auto SettleTime = 600ms; // fades and the sliding panel have ended
constexpr int PictureMargin = 28;  // points around the window

/// Operates the program on a machine without a person: waits for the results, downloads the first, accepts
/// the save sheet's suggestion, takes a picture of the screen, prints what happened, and quits with 0. Quits
/// with 1 and a line with the reason when a step fails.
class Drive final : public QObject
{
public:
    Drive(MainWindowController &mainWindow, const QString &picturePath);

private:
    enum class Step
    {
        AwaitResults,
        AwaitPoster,
        AwaitSheet,
        AwaitSaved
    };

    void look();
    void lookForResults();
    void lookForPoster();
    void lookForSheet();
    void lookForSavedFile();
    void go(Step next);
    bool takePicture() const;
    void giveUp(const QString &reason);

    MainWindowController &m_mainWindow;
    const QString m_picturePath;
    Step m_step = Step::AwaitResults;
    QTimer m_timer;
    QElapsedTimer m_inStep;
    QString m_savedPath;
};

template <class Widget>
Widget *visibleWidget()
{
    const auto widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        if (auto *found = qobject_cast<Widget *>(widget); found && found->isVisible())
            return found;
    }
    return nullptr;
}

void pressReturn(QWidget *widget)
{
    QApplication::postEvent(widget, new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier));
    QApplication::postEvent(widget, new QKeyEvent(QEvent::KeyRelease, Qt::Key_Return, Qt::NoModifier));
}
Drive::Drive(MainWindowController &mainWindow, const QString &picturePath)
    : m_mainWindow(mainWindow), m_picturePath(picturePath)
{
    // No person can answer a prompt, and these downloads are not a person's.
    mainWindow.mainViewController()->setDownloadPrompt(nullptr);
    connect(&m_timer, &QTimer::timeout, this, &Drive::look);
    m_timer.start(LookInterval);
    m_inStep.start();
}

void Drive::look()
{
    if (const auto *alert = visibleWidget<QMessageBox>()) {
        giveUp(alert->text());
        return;
    }
    if (std::chrono::milliseconds(m_inStep.elapsed()) > StepLimit) {
        giveUp(u"nothing happened for half a minute"_s);
        return;
    }
    switch (m_step) {
    case Step::AwaitResults:
        return lookForResults();
    case Step::AwaitPoster:
        return lookForPoster();
    case Step::AwaitSheet:
        return lookForSheet();
    case Step::AwaitSaved:
        return lookForSavedFile();
    }
}

void Drive::lookForResults()
{
    ui::Window *window = m_mainWindow.window();
    auto *table = window->findChild<TableView *>(u"tableView"_s);
    if (!table->isVisible() || table->numberOfRows() == 0)
        return;
    printLine(window->windowTitle());
    for (int row = 0; row < table->numberOfRows(); ++row)
        printLine(u"  "_s + table->model()->index(row, 0).data(Qt::AccessibleTextRole).toString());
    table->selectRow(0);
    go(Step::AwaitPoster);
}

void Drive::lookForPoster()
{
    ui::Window *window = m_mainWindow.window();
    const auto *poster = window->findChild<ImageView *>(u"detailViewImageView"_s);
    if (!poster->image() && std::chrono::milliseconds(m_inStep.elapsed()) < PosterLimit)
        return;
    window->findChild<QPushButton *>(u"downloadButton"_s)->click();
    go(Step::AwaitSheet);
}

void Drive::lookForSheet()
{
    auto *sheet = visibleWidget<QFileDialog>();
    if (!sheet)
        return;
    auto *name = sheet->findChild<QLineEdit *>(u"fileNameEdit"_s);
    m_savedPath = sheet->directory().filePath(name->text());
    pressReturn(name);
    go(Step::AwaitSaved);
}

void Drive::lookForSavedFile()
{
    if (!QFileInfo::exists(m_savedPath) || visibleWidget<QFileDialog>() ||
        std::chrono::milliseconds(m_inStep.elapsed()) < SettleTime)
        return;
    printLine(u"Saved "_s + m_savedPath);
    if (!takePicture()) {
        giveUp(u"the picture %1 could not be written"_s.arg(m_picturePath));
        return;
    }
    printLine(u"Picture "_s + m_picturePath);
    m_timer.stop();
    QApplication::exit(0);
}

void Drive::go(Step next)
{
    m_step = next;
    m_inStep.restart();
}

/// Captures the screen around the window, so that the picture shows its shadow and corners.
bool Drive::takePicture() const
{
    const ui::Window *window = m_mainWindow.window();
    const int margin = PictureMargin - window->shadowMargin();
    const QScreen *screen = window->screen();
    const QRect around = window->geometry().adjusted(-margin, -margin, margin, margin) & screen->geometry();
    const QPixmap picture =
        window->screen()->grabWindow(0, around.x(), around.y(), around.width(), around.height());
    return !picture.isNull() && picture.save(m_picturePath);
}

void Drive::giveUp(const QString &reason)
{
    printLine(u"Stopped: "_s + reason);
    m_timer.stop();
    QApplication::exit(1);
}
} // namespace

/// plovendix-drive VIDEO PICTURE: runs the program without a person.
int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "Usage: plovendix-drive VIDEO PICTURE\n");
        return 2;
    }
    const QString picture = QString::fromLocal8Bit(argv[2]);
    std::unique_ptr<Drive> drive;
    const auto begin = [&](MainWindowController &mainWindow) {
        drive = std::make_unique<Drive>(mainWindow, picture);
    };
    return runProgram(2, argv, {.installServices = installServices, .windowShown = begin});
}
