#include "Credentials.h"

#include "EnvironmentSecrets.h"

#include <platform/MainQueue.h>
#include <services/net/Redactor.h>

#include <QLoggingCategory>

#include <memory>
#include <utility>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.secrets", QtInfoMsg)

struct Loading
{
    Credentials credentials;
    int missing = 3;
    bool hasComplained = false; // what ails one ails them all
    std::function<void(Credentials)> done;

    void take(Secret secret, const QString &text)
    {
        const QString value = Credentials::cleaned(secret, text);
        hideSecret(value);
        credentials.at(secret) = value;
        if (--missing == 0)
            done(credentials);
    }
};
} // namespace

QString &Credentials::at(Secret secret)
{
    switch (secret) {
    case Secret::SubtitleKey:
        return subtitleKey;
    case Secret::SubtitlePassword:
        return subtitlePassword;
    case Secret::MetadataKey:
        break;
    }
    return metadataKey;
}

QString Credentials::cleaned(Secret secret, const QString &text)
{
    return secret == Secret::SubtitlePassword ? text : text.simplified();
}

void loadCredentials(SecretStore &store, std::function<void(Credentials)> done)
{
    auto loading = std::make_shared<Loading>();
    loading->done = std::move(done);
    for (const Secret secret : {Secret::SubtitleKey, Secret::SubtitlePassword, Secret::MetadataKey}) {
        if (const auto given = environmentSecret(secret)) {
            MainQueue::shared().async([=, text = *given] { loading->take(secret, text); });
            continue;
        }
        store.read(secret, [=](const Result<std::optional<QString>> &read) {
            if (!read && !std::exchange(loading->hasComplained, true))
                qCWarning(log).noquote() << "secrets could not be read:" << read.error().detail;
            loading->take(secret, read ? read->value_or(QString()) : QString());
        });
    }
}
