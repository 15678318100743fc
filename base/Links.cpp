#include "Links.h"

#include "FatalFault.h"
#include "URLComponents.h"
#include "Workspace.h"

bool Links::open(const QString &address)
{
    const auto url = parseURLString(address);
    if (!url)
        fatalFault(QStringLiteral("The fixed address \"%1\" is no URL").arg(address));
    return Workspace::sharedWorkspace().openURL(*url);
}
