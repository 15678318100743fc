#include "FolderImporting.h"

#include <utility>

namespace
{
std::shared_ptr<FolderImporting> installedImporting;
}

FolderImporting::~FolderImporting() = default;

std::shared_ptr<FolderImporting> FolderImporting::shared()
{
    return installedImporting;
}

void FolderImporting::setShared(std::shared_ptr<FolderImporting> importing)
{
    installedImporting = std::move(importing);
}
