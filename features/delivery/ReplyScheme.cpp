#include "ReplyScheme.h"

#include <base/Workspace.h>

#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{
const QString OwnScheme = u"plovendix"_s;

/// Schemes of browsers and mail programs, and of places that a desktop may open. The desktop is asked as
/// well, because its schemes depend on what is installed.
const QStringList &refusedSchemes()
{
    static const QStringList schemes = {
        u"http"_s,        u"https"_s, u"ws"_s,     u"wss"_s,     u"about"_s, u"data"_s,  u"javascript"_s,
        u"view-source"_s, u"blob"_s,  u"chrome"_s, u"mailto"_s,  u"tel"_s,   u"file"_s,  u"ftp"_s,
        u"ftps"_s,        u"sftp"_s,  u"ssh"_s,    u"smb"_s,     u"cifs"_s,  u"nfs"_s,   u"afp"_s,
        u"dav"_s,         u"davs"_s,  u"webdav"_s, u"webdavs"_s, u"trash"_s, u"admin"_s, OwnScheme,
    };
    return schemes;
}
} // namespace

bool mayBeRepliedTo(const QString &scheme, Workspace &workspace)
{
    return !refusedSchemes().contains(scheme, Qt::CaseInsensitive) && !workspace.opensItself(scheme);
}
