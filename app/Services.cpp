#include "Services.h"

#include "DeferredSecretStore.h"
#include "ProgramAccounts.h"
#include "SecretFileQuestion.h"

#include <base/Bundle.h>
#include <model/FolderImporting.h>
#include <model/ServiceStatus.h>
#include <net/secrets/KeychainSecretStore.h>
#include <sources/catalogue/CatalogueMetadata.h>
#include <sources/catalogue/CatalogueService.h>
#include <sources/catalogue/import/FolderImport.h>
#include <sources/combined/Services.h>
#include <base/Workspace.h>

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
    return std::make_shared<DeferredSecretStore>(std::make_shared<KeychainSecretStore>(
        [&question](const QString &, std::function<void(bool)> answer) { question.ask(std::move(answer)); },
        FileSecretStore(),
        hasKeyring ? KeychainSecretStore::Keyring::Asked : KeychainSecretStore::Keyring::Absent));
}

/// The services and the objects that show their state, during the program's life.
class ProgramServices final
{
public:
    ProgramServices();
    ~ProgramServices();
    ProgramServices(const ProgramServices &) = delete;
    ProgramServices &operator=(const ProgramServices &) = delete;

private:
    void logOut();
    void showStatus();

    // A search reports a missing starter catalogue.
    const QString m_starter = Bundle::main().pathForResource(u"starter"_s, u"sqlite"_s).value_or(QString());
    SecretFileQuestion m_question;
    const QList<CataloguePlace> m_catalogues = standardCataloguePlaces(m_starter);
    Services m_services{{std::make_shared<CatalogueService>(m_catalogues), CatalogueService::name(),
                         std::make_shared<CatalogueMetadata>(m_catalogues), secretStore(m_question)}};
    const std::shared_ptr<ProgramAccounts> m_accounts =
        std::make_shared<ProgramAccounts>(m_services, m_starter);
    std::shared_ptr<FolderImporting> m_folders = std::make_shared<FolderImport>(standardOwnCataloguePath());
};

ProgramServices::ProgramServices()
{
    m_services.install();
    m_services.setObserver([this] {
        showStatus();
        Q_EMIT m_accounts->changed();
    });
    m_services.rest().setQuotaObserver([this](const RestQuota &) { showStatus(); });
    m_services.setAnswerObserver([this] { showStatus(); });
    ServiceAccounts::setShared(m_accounts);
    FolderImporting::setShared(m_folders);
}

ProgramServices::~ProgramServices()
{
    ServiceAccounts::setShared({});
    FolderImporting::setShared({});
    m_folders->stop(); // its thread ends while the services log out
    m_services.setObserver({});
    m_services.setAnswerObserver({});
    logOut();
    m_services.rest().setQuotaObserver({});
}

void ProgramServices::logOut()
{
    QEventLoop loop;
    bool isDone = false;
    m_services.shutDown([&] {
        isDone = true;
        loop.quit();
    });
    QTimer::singleShot(LogoutTimeout, &loop, &QEventLoop::quit);
    if (!isDone)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void ProgramServices::showStatus()
{
    ServiceStatus::shared().setValue({m_services.asksTheNetwork(), m_services.rest().quota().remaining,
                                      m_services.missing(), m_services.missingReason(), m_services.leftOut(),
                                      m_services.pause()});
}
} // namespace

std::shared_ptr<void> installServices()
{
    return std::make_shared<ProgramServices>();
}
