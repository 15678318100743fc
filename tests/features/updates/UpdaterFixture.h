#pragma once
#include <base/UserDefaults.h>
#include <base/Workspace.h>
#include <features/updates/AppcastSignature.h>
#include <features/updates/SUUpdater.h>
#include <tests/support/Sandbox.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>

#include <QTest>

/// Notes what the updater shows: one line a state.
class NotingWindow final : public UpdatePresenting
{
public:
    QStringList states;
    UpdateOffer offer;
    bool shown = false;
    Answering *person = nullptr;

    void setAnswering(Answering *answering) override { person = answering; }
    void showChecking() override { enter(QStringLiteral("checking")); }
    void showUpToDate(const QString &version) override { enter(QStringLiteral("newest ") + version); }
    void showOffer(const UpdateOffer &newOffer, Arrival arrival) override
    {
        offer = newOffer;
        enter((arrival == Arrival::Asked ? QStringLiteral("offer ") : QStringLiteral("by itself ")) +
              newOffer.version);
    }
    void showFailure(const QString &sentence) override { enter(QStringLiteral("failure ") + sentence); }
    void bringForward() override { states += QStringLiteral("forward"); }
    bool isShown() const override { return shown; }
    void dismiss() override
    {
        shown = false;
        states += QStringLiteral("dismissed");
    }
    /// What the person does with the title bar's button.
    void close()
    {
        shown = false;
        person->windowClosed();
    }

private:
    void enter(const QString &state)
    {
        shown = true;
        states += state;
    }
};

class OpenedLinks final : public Workspace
{
public:
    QList<QUrl> opened;
    bool takesLinks = true;

    bool openURL(const QUrl &url) override
    {
        opened += url;
        return takesLinks;
    }
};

/// An updater of version 1.5 with a feed on this machine, made anew for each test.
struct UpdaterFixture
{
    Sandbox sandbox;
    AppcastSignature::KeyPair pair = AppcastSignature::makeKeyPair();
    InstalledProgram installed{QStringLiteral("com.quorvane.Plovendix"), QStringLiteral("1.5"),
                               pair.publicKey};
    std::shared_ptr<OpenedLinks> workspace;
    std::unique_ptr<ManualClock> clock;
    std::unique_ptr<LoopbackServer> server;
    std::unique_ptr<NotingWindow> window;
    std::unique_ptr<SUUpdater> updater;
    ServedAnswer answer;
    int files = 0;
    QString feedDate = QStringLiteral("2030-03-01T12:00:00Z");

    static UserDefaults &defaults() { return UserDefaults::standard(); }

    /// The updater itself is made by `start`.
    void prepare()
    {
        UserDefaults::setStandardFile(sandbox.path(QStringLiteral("settings%1.conf").arg(++files)));
        workspace = std::make_shared<OpenedLinks>();
        Workspace::setSharedWorkspace(workspace);
        clock = std::make_unique<ManualClock>();
        // Nothing passes by itself but the very next turn.
        clock->setLongestAutomaticWait(std::chrono::milliseconds(0));
        server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &) { return answer; });
        defaults().setObject(QStringLiteral("UpdateFeedURL"), server->url(QStringLiteral("/f")).toString());
        window = std::make_unique<NotingWindow>();
        feedDate = QStringLiteral("2030-03-01T12:00:00Z");
        offerVersions({});
    }
    void clear()
    {
        updater.reset();
        window.reset();
        server.reset();
        clock.reset();
        Workspace::setSharedWorkspace({});
    }
    void start() { updater = std::make_unique<SUUpdater>(*clock, *window, installed); }

    void offerVersions(const QStringList &versions, bool areSigned = true)
    {
        AppcastFeed feed{{}, feedDate, {}};
        QByteArray items;
        for (const QString &version : versions) {
            AppcastItem item{version,
                             QStringLiteral("https://get.example/") + version,
                             QStringLiteral("<p>New in %1</p>").arg(version),
                             {}};
            if (areSigned)
                item.signature = AppcastSignature::sign(installed.identifier, item, pair.secretKey);
            feed.items += item;
            items += "<item><u:version>" + version.toUtf8() + "</u:version><link>" + item.link.toUtf8() +
                     "</link><description>" + item.notes.toHtmlEscaped().toUtf8() +
                     "</description><u:signature>" + item.signature.toBase64() + "</u:signature></item>";
        }
        feed.signature = AppcastSignature::sign(installed.identifier, feed, pair.secretKey);
        answer = {200,
                  {},
                  "<rss xmlns:u=\"https://www.quorvane.example/xml/updates/1\"><channel><u:date>" +
                      feed.date.toUtf8() + "</u:date><u:signature>" + feed.signature.toBase64() +
                      "</u:signature>" + items + "</channel></rss>"};
    }
    void switchAutomatic(bool on) { defaults().setObject(QStringLiteral("SUEnableAutomaticChecks"), on); }
    QDateTime lastCheck() const { return defaults().object(QStringLiteral("SULastCheckTime")).toDateTime(); }
};
