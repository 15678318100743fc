#pragma once
#include <base/UserDefaults.h>
#include <features/preferences/PrefsWindowController.h>
#include <features/preferences/PrefsServicesViewController.h>
#include <features/preferences/ServiceAccounts.h>
#include <tests/support/FakeWorkspace.h>
#include <tests/support/Sandbox.h>
#include <ui/scenes/Storyboard.h>
#include <ui/window/Window.h>

#include <QDir>
#include <QTest>

using Item = ServiceAccounts::Item;

/// Accounts that answer as the test says, when it says.
class FakeAccounts final : public ServiceAccounts
{
public:
    QString text(Item item) const override { return texts.value(item); }
    bool isFixed(Item item) const override { return fixed.contains(item); }
    void setText(Item item, const QString &text, std::function<void(Result<void>)> completion) override
    {
        texts[item] = text.simplified();
        ++changes;
        Q_EMIT changed();
        completion(kept);
    }
    QString whyUnread() const override { return unread; }
    void testSubtitles(std::function<void(Result<Connection>)> completion) override
    {
        textsWhenTested = texts;
        answerSubtitles = std::move(completion);
    }
    void testFilms(std::function<void(Result<void>)> completion) override
    {
        answerFilms = std::move(completion);
    }
    Catalogue catalogue() const override { return place; }

    QMap<Item, QString> texts;
    QSet<Item> fixed;
    Result<void> kept;
    QString unread;
    int changes = 0;
    QMap<Item, QString> textsWhenTested;
    std::function<void(Result<Connection>)> answerSubtitles;
    std::function<void(Result<void>)> answerFilms;
    Catalogue place{QDir::homePath() + QStringLiteral("/data & more/catalogue.sqlite"), 2'500'000, true};
};

inline base::Error refusal(const QString &sentence)
{
    return {QStringLiteral("test"), 1, sentence};
}

/// The Services pane in a window, with accounts and a desktop that a test looks into.
struct ServicesPaneFixture
{
    ServicesPaneFixture(const Sandbox &sandbox, int number)
    {
        UserDefaults::setStandardFile(sandbox.path(QStringLiteral("settings/%1.conf").arg(number)));
        UserDefaults::standard().registerDefaults(
            {{QStringLiteral("SubtitleHearingImpaired"), QStringLiteral("neutral")},
             {QStringLiteral("SubtitleForeignPartsOnly"), QStringLiteral("avoided")},
             {QStringLiteral("SubtitleMachineTranslated"), QStringLiteral("avoided")}});
        ServiceAccounts::setShared(accounts);
    }
    ~ServicesPaneFixture()
    {
        window.reset();
        pane.reset();
        ServiceAccounts::setShared({});
        Workspace::setSharedWorkspace({});
    }

    void open()
    {
        pane = Storyboard::named(QStringLiteral("Preferences"))
                   .instantiate<PrefsServicesViewController>(QStringLiteral("PrefsServicesViewController"));
        window = std::make_unique<ui::Window>();
        window->setContentViewController(pane);
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    template <class Type>
    Type *child(const char *name) const
    {
        return window->findChild<Type *>(QString::fromLatin1(name));
    }

    std::shared_ptr<FakeAccounts> accounts = std::make_shared<FakeAccounts>();
    std::shared_ptr<FakeWorkspace> workspace = FakeWorkspace::install();
    std::shared_ptr<PrefsServicesViewController> pane;
    std::unique_ptr<ui::Window> window;
};
