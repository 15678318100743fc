#include "InstalledProgram.h"

#include <base/Bundle.h>

using namespace Qt::StringLiterals;

InstalledProgram InstalledProgram::ofBundle(const Bundle &bundle)
{
    const auto text = [&bundle](const QString &key) {
        return bundle.objectForInfoDictionaryKey(key).toString();
    };
    return {text(u"CFBundleIdentifier"_s), text(u"CFBundleShortVersionString"_s),
            QByteArray::fromBase64(text(u"SUPublicEDKey"_s).toLatin1())};
}
