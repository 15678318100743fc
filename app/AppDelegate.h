#pragma once
#include <features/delivery/ExternalRequest.h>
#include <features/feedback/FeedbackReporting.h>

#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class QObject;
struct GetURLEvent;

/// The program as a whole: prepares settings before anything else, takes URLs and files from outside, keeps a
/// companion's request until the main view can take it, and answers the menu's actions that concern no
/// window. One for the whole process, on the main thread.
class AppDelegate final : public FeedbackReporting::Delegate
{
public:
    /// Registers defaults and the transformer "LanguageCodeToName", unless the locale has no language code.
    /// `obtainSharedUpdater` makes the shared updater, which runs the scheduled checks from then on.
    explicit AppDelegate(std::function<void()> obtainSharedUpdater = {});
    ~AppDelegate() override;
    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;

    /// The instance, or null.
    static AppDelegate *shared();

    /// The last request that came before the main view could take it.
    std::optional<ExternalRequest> externalRequest;

    /// Installs the handler of get-URL events before launch has finished, so that it gets a URL that started
    /// the program.
    void applicationWillFinishLaunching();
    /// Creates the shared updater.
    void applicationDidFinishLaunching();
    /// Always true: closing the last window ends the program.
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

    /// Delivers the request that the event's URL makes, or shows what is wrong with it.
    void handleGetURLEvent(const GetURLEvent &event);
    /// Takes files and URLs given to the program: a URL is a get-URL event, and of several files the first is
    /// used, as with a drop.
    void open(const QStringList &uris);
    /// Activates the first window, if there is one.
    void activate();

    /// Opens the maker's website.
    void visitQuorvane(QObject *sender);
    /// Opens the feedback window. A missing feedback reporter is a fatal fault.
    void sendFeedback(QObject *sender);
    /// The program's name and version for a feedback report.
    QMap<QString, QString> customParametersForFeedbackReport() const override;

private:
    /// Searches for the request's file in the first window, or keeps the request until the main view can
    /// take it.
    void deliver(const ExternalRequest &request);
    /// Shows the alert. Of the errors that arrive while it is shown, the last one is shown afterwards.
    void presentError(const base::Error &error);

    const std::function<void()> m_obtainSharedUpdater;
    bool m_isPresenting = false;
    std::optional<base::Error> m_nextError;
};
