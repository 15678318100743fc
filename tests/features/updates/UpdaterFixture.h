#pragma once
#include <base/UserDefaults.h>
#include <base/Workspace.h>
#include <features/updates/AppcastSignature.h>
#include <features/updates/SUUpdater.h>
#include <tests/support/Sandbox.h>
#include <tests/support/standin/LoopbackServer.h>
#include <tests/support/timing/Caught.h>
#include <tests/support/timing/ManualClock.h>
#include <ui/window/Window.h>

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

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

/// An updater of version 1.5 with a feed on this machine, made anew for each test, and its window.
class UpdaterFixture : public QObject
{
public:
    Sandbox sandbox;
    AppcastSignature::KeyPair pair = AppcastSignature::makeKeyPair();
    InstalledProgram installed{QStringLiteral("com.quorvane.Plovendix"), QStringLiteral("1.5"),
                               pair.publicKey};
    std::shared_ptr<OpenedLinks> workspace;
    std::unique_ptr<ManualClock> clock;
    std::unique_ptr<LoopbackServer> server;
    std::unique_ptr<SUUpdater> updater;
    ServedAnswer answer;
    QString feedDate;
    QList<bool> quietShows; // for each showing of the window whether it asked for no focus

    static UserDefaults &defaults() { return UserDefaults::standard(); }

    /// The updater itself is made by `start`.
    void prepare()
    {
        UserDefaults::setStandardFile(sandbox.path(QStringLiteral("settings%1.conf").arg(++m_files)));
        workspace = std::make_shared<OpenedLinks>();
        Workspace::setSharedWorkspace(workspace);
        clock = std::make_unique<ManualClock>();
        // Nothing passes by itself but the very next turn.
        clock->setLongestAutomaticWait(std::chrono::milliseconds(0));
        server = std::make_unique<LoopbackServer>([this](const ReceivedRequest &) { return answer; });
        defaults().setObject(QStringLiteral("UpdateFeedURL"), server->url(QStringLiteral("/f")).toString());
        feedDate = QStringLiteral("2030-03-01T12:00:00Z");
        offerVersions({});
        quietShows.clear();
        qApp->installEventFilter(this);
    }
    void clear()
    {
        updater.reset();
        server.reset();
        clock.reset();
        Workspace::setSharedWorkspace({});
    }
    void start()
    {
        updater.reset();
        updater = std::make_unique<SUUpdater>(*clock, installed);
    }

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
    QDateTime lastCheck() const { return defaults().object(QStringLiteral("SULastCheckTime")).toDateTime(); }

    /// The update window when it is shown, or null.
    static ui::Window *window()
    {
        const auto open = ui::Window::openWindows();
        return open.isEmpty() ? nullptr : open.constFirst();
    }
    template <class Type>
    static Type *child(const char *name)
    {
        return window()->findChild<Type *>(QString::fromLatin1(name));
    }
    static void press(const char *button) { child<QPushButton>(button)->click(); }
    /// What the window says; empty when there is none.
    static QString shown()
    {
        if (!window())
            return {};
        return child<QLabel>("headlineLabel")->text() + u'\n' + child<QLabel>("explanationLabel")->text();
    }
    void waitForRequests(qsizetype count) const
    {
        QTRY_COMPARE_WITH_TIMEOUT(server->requests().size(), count, WaitLimit);
    }
    static void waitFor(const QString &text)
    {
        QTRY_VERIFY2_WITH_TIMEOUT(shown().contains(text), qPrintable(shown()), WaitLimit);
    }

private:
    bool eventFilter(QObject *object, QEvent *event) override
    {
        const auto *shown = qobject_cast<ui::Window *>(object);
        if (shown && event->type() == QEvent::Show)
            quietShows += shown->testAttribute(Qt::WA_ShowWithoutActivating);
        return false;
    }

    int m_files = 0;
};
