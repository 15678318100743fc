#pragma once
#include <features/delivery/IncomingRequestHandler.h>
#include <features/feedback/FeedbackReporting.h>
#include <features/search/PendingRequest.h>

#include <QMap>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class QObject;
class QUrl;
struct GetURLEvent;

/// What the application delegate asks of the services around the program; the process entry fills it in.
struct ApplicationServices
{
    /// Makes the shared updater, which runs the scheduled checks from then on.
    std::function<void()> obtainSharedUpdater = {};
};

/// The program as a whole: prepares settings before anything else, takes URLs and files from outside, keeps a
/// companion's request until the main view can take it, and answers the menu's actions that concern no
/// window. One for the whole process, on the main thread.
class AppDelegate final : public PendingRequest,
                          public IncomingRequestHost,
                          public FeedbackReporting::Delegate
{
public:
    /// Registers defaults and the transformer "LanguageCodeToName", unless the locale has no language code.
    explicit AppDelegate(ApplicationServices services = {});
    ~AppDelegate() override;
    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;

    /// The one there is, or nothing.
    static AppDelegate *shared();

    std::optional<ExternalRequest> externalRequest() const override { return m_externalRequest; }
    void setExternalRequest(const std::optional<ExternalRequest> &request) override
    {
        m_externalRequest = request;
    }

    /// Installs the handler of get-URL events: before launch has finished, so that a URL that started the
    /// program reaches it.
    void applicationWillFinishLaunching();
    /// Obtains the shared updater.
    void applicationDidFinishLaunching();
    /// Closing the last window ends the program, always.
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }

    /// Passes the event to the parser of incoming requests.
    void handleGetURLEvent(const GetURLEvent &event);
    /// Takes files and URLs given to the program: a URL is a get-URL event, of several files the first
    /// counts, as with a drop.
    void open(const QStringList &uris);
    /// Brings the first window to the front, if there is one.
    void activate();

    /// Opens the maker's website.
    void visitQuorvane(QObject *sender);
    /// Lets the person write to the maker. Without a feedback reporter a fatal fault.
    void sendFeedback(QObject *sender);
    /// The program's name and version for a feedback report.
    QMap<QString, QString> customParametersForFeedbackReport() const override;

    bool bringFirstWindowForward() override;
    FileSearching *firstWindowContent() override;
    void park(const ExternalRequest &request) override { setExternalRequest(request); }
    /// Shows the alert; of errors that come while it is up the last one is shown after it.
    void presentError(const Error &error) override;

private:
    void searchForFile(const QUrl &file);

    const ApplicationServices m_services;
    IncomingRequestHandler m_requests;
    std::optional<ExternalRequest> m_externalRequest;
    bool m_isPresenting = false;
    std::optional<Error> m_nextError;
};
