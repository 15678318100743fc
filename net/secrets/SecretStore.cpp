#include "SecretStore.h"

using namespace Qt::StringLiterals;

SecretStore::~SecretStore() = default;

QString SecretStore::nameOf(Secret secret)
{
    switch (secret) {
    case Secret::SubtitleKey:
        return u"SubtitleServiceKey"_s;
    case Secret::SubtitlePassword:
        return u"SubtitleServicePassword"_s;
    case Secret::MetadataKey:
        return u"MetadataServiceKey"_s;
    }
    return {};
}
