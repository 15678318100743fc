#include "ServiceInstallation.h"

#include "ProgramServices.h"
#include "SecretFileQuestion.h"

#include <base/Bundle.h>
#include <base/Workspace.h>
#include <features/feedback/FRFeedbackReporter.h>
#include <features/feedback/RecentMessages.h>
#include <features/updates/SUUpdater.h>
#include <net/secrets/KeychainSecretStore.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <sources/catalogue/CatalogueService.h>
#include <sources/catalogue/import/FolderImport.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto LogoutTimeout = 5s;

/// The store of secrets. Only on Linux does the keyring need a session bus; asking without one would start a
/// private bus.
std::shared_ptr<SecretStore> secretStore(SecretFileQuestion &question)
{
#ifdef Q_OS_LINUX
    const bool hasKeyring = Workspace::hasSessionBus();
#else
    const bool hasKeyring = true;
#endif
    return std::make_shared<KeychainSecretStore>(
        [&question](const QString &, std::function<void(bool)> answer) { question.ask(std::move(answer)); },
        FileSecretStore(),
        hasKeyring ? KeychainSecretStore::Keyring::Asked : KeychainSecretStore::Keyring::Absent);
}

/// The services during the program's life.
class InstalledServices final
{
public:
    InstalledServices()
    {
        // A search reports a missing starter catalogue.
        const QString starter = Bundle::main().pathForResource(u"starter"_s, u"sqlite"_s).value_or(QString());
        const QList<CataloguePlace> places = standardCataloguePlaces(starter);
        const auto names = std::make_shared<VideoNames>();
        m_services = std::make_shared<ProgramServices>(ProgramServices::Parts{
            std::make_shared<CatalogueService>(places, names), CatalogueService::name(),
            std::make_shared<CatalogueMetadata>(places), secretStore(m_question), starter, names});
        ServiceAccounts::setShared(m_services);
        FolderImporting::setShared(m_folders);
    }

    ~InstalledServices()
    {
        ServiceAccounts::setShared({});
        FolderImporting::setShared({});
        m_folders->stop(); // its thread ends while the services log out
        logOut();
    }

    InstalledServices(const InstalledServices &) = delete;
    InstalledServices &operator=(const InstalledServices &) = delete;

private:
    void logOut()
    {
        QEventLoop loop;
        bool isDone = false;
        m_services->shutDown([&] {
            isDone = true;
            loop.quit();
        });
        QTimer::singleShot(LogoutTimeout, &loop, &QEventLoop::quit);
        if (!isDone)
            loop.exec(QEventLoop::ExcludeUserInputEvents);
    }

    SecretFileQuestion m_question;
    std::shared_ptr<FolderImporting> m_folders = std::make_shared<FolderImport>(standardOwnCataloguePath());
    std::shared_ptr<ProgramServices> m_services;
};

/// Declared in this order, so that the user of the clock is destroyed first.
struct Updater
{
    Clock clock;
    SUUpdater updater{clock, InstalledProgram::ofBundle(Bundle::main())};
};

struct Reporter
{
    Clock clock;
    FRFeedbackReporter reporter{clock};
};
} // namespace

std::shared_ptr<void> installServices()
{
    return std::make_shared<InstalledServices>();
}

void installMakerServices()
{
    RecentMessages::install();
    const auto updater = std::make_shared<Updater>();
    UpdateChecking::setSharedUpdater({updater, &updater->updater});
    const auto reporter = std::make_shared<Reporter>();
    FeedbackReporting::setSharedReporter({reporter, &reporter->reporter});
    // Windows and timers must be destroyed before the application object.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [] {
        UpdateChecking::setSharedUpdater({});
        FeedbackReporting::setSharedReporter({});
        RecentMessages::uninstall();
    });
}
