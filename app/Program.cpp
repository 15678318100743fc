#include "Program.h"

#include "AppDelegate.h"
#include "AppScenes.h"
#include "CommandLine.h"
#include "MainWindowController.h"

#include <base/MainQueue.h>
#include <base/StandardOutput.h>
#include <features/donation/DonationPrompt.h>
#include <features/search/MainViewController.h>
#include <ui/style/Appearance.h>
#include <ui/system/ApplicationLink.h>
#include <ui/system/WindowSystem.h>
#include <ui/views/Image.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QDir>
#include <QIcon>

#include <cstdio>

namespace
{
using namespace Qt::StringLiterals;

constexpr int UsageError = 2;

QByteArrayList argumentsOf(int argc, char **argv)
{
    QByteArrayList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QByteArray(argv[i]);
    return arguments;
}

void describeApplication()
{
    QApplication::setOrganizationName(u"Quorvane"_s);
    QApplication::setApplicationName(u"Plovendix"_s);
    QApplication::setApplicationDisplayName(QString());
    QApplication::setDesktopFileName(u"com.quorvane.Plovendix"_s);
}

/// Sets the icon for task bars that do not find the desktop entry.
void showWindowIcon()
{
    if (const auto icon = ui::Image::named(u"com.quorvane.Plovendix"_s))
        QApplication::setWindowIcon(QIcon(icon->pixmap(QSizeF(64, 64), 1)));
}

/// Whether the arguments only ask for a text, which needs no display. Uses the arguments alone, because the
/// bundle needs an application object.
bool asksForText(const QByteArrayList &arguments)
{
    static const QByteArrayList texts{"-h", "--help", "-v", "--version"};
    for (const QByteArray &argument : arguments) {
        if (argument == "--")
            return false;
        if (texts.contains(argument))
            return true;
    }
    return false;
}

/// Prints a text of several lines, for --help.
void printText(const QString &text)
{
    for (const QString &line : text.split(u'\n'))
        printLine(line);
}

/// Handles requests from the session bus.
void serve(ApplicationLink &link, AppDelegate &delegate, MainWindowController &mainWindow)
{
    QObject::connect(&link, &ApplicationLink::activated, &link, [&delegate] { delegate.activate(); });
    QObject::connect(&link, &ApplicationLink::actionActivated, &link,
                     [&delegate, &mainWindow](const QString &name) {
                         delegate.activate();
                         mainWindow.activateAction(name);
                     });
    QObject::connect(&link, &ApplicationLink::opened, &link,
                     [&delegate](const QStringList &uris) { delegate.open(uris); });
}
} // namespace

int runProgram(int argc, char **argv, const ProgramParts &parts)
{
    ignoreBrokenPipes();
    if (asksForText(argumentsOf(argc, argv))) {
        const QCoreApplication application(argc, argv);
        printText(*parseCommandLine(argumentsOf(argc, argv), {}).print);
        return 0;
    }
    const QString activationToken = WindowSystem::activationTokenOfStart();
    // The toolkit removes its own options (-platform, -style) from the arguments.
    QApplication application(argc, argv);
    const CommandLine line = parseCommandLine(argumentsOf(argc, argv), QDir::currentPath().toLocal8Bit());
    if (line.error) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(*line.error));
        return UsageError;
    }

    MainQueue::shared();
    // Destroyed last: while it logs out of servers, a new start can already become the first instance.
    std::shared_ptr<void> services;
    ApplicationLink link(parts.applicationIdentifier);
    if (!parts.applicationIdentifier.isEmpty() &&
        link.start(line.uris, activationToken) == ApplicationLink::Outcome::HandedOver)
        return 0;
    describeApplication();
    showWindowIcon();
    Appearance::shared().install();
    registerScenes();
    services = parts.installServices();
    AppDelegate delegate(parts.obtainSharedUpdater);
    QApplication::setQuitOnLastWindowClosed(delegate.applicationShouldTerminateAfterLastWindowClosed());

    delegate.applicationWillFinishLaunching();
    DonationPrompt donationPrompt;
    MainWindowController mainWindow;
    mainWindow.mainViewController()->setDownloadPrompt(&donationPrompt);
    mainWindow.showWindow();
    // Closing the main window ends the program, so that no preferences window stays alone.
    QObject::connect(mainWindow.window(), &ui::Window::closed, &application,
                     [] { QApplication::closeAllWindows(); });
    serve(link, delegate, mainWindow);
    delegate.open(line.uris);
    delegate.applicationDidFinishLaunching();
    if (parts.windowShown)
        parts.windowShown(mainWindow);
    return QApplication::exec();
}
