#include "ServiceAccounts.h"

#include <utility>

namespace
{
std::shared_ptr<ServiceAccounts> installedAccounts;
}

ServiceAccounts::~ServiceAccounts() = default;

std::shared_ptr<ServiceAccounts> ServiceAccounts::shared()
{
    return installedAccounts;
}

void ServiceAccounts::setShared(std::shared_ptr<ServiceAccounts> accounts)
{
    installedAccounts = std::move(accounts);
}
