#include "Credentials.h"

#include "EnvironmentSecrets.h"

#include <base/MainQueue.h>
#include <net/Redactor.h>

#include <QLoggingCategory>

#include <array>
#include <memory>
#include <utility>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.secrets", QtInfoMsg)

constexpr std::array AllSecrets{Secret::SubtitleKey, Secret::SubtitlePassword, Secret::MetadataKey};

struct Loading
{
    Credentials credentials;
    std::size_t missing = AllSecrets.size();
    bool hasComplained = false;         // what ails one ails them all
    std::optional<base::Error> failure; // the first that a person can read
    LoadCompletion done;

    void take(Secret secret, const QString &text)
    {
        credentials.take(secret, text);
        if (--missing == 0)
            done(credentials, failure);
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

void Credentials::take(Secret secret, const QString &text)
{
    const QString value = cleaned(secret, text);
    hideSecret(value);
    at(secret) = value;
}

Credentials environmentCredentials()
{
    Credentials credentials;
    for (const Secret secret : AllSecrets)
        credentials.take(secret, environmentSecret(secret).value_or(QString()));
    return credentials;
}

void loadCredentials(SecretStore &store, LoadCompletion done)
{
    auto loading = std::make_shared<Loading>();
    loading->done = std::move(done);
    for (const Secret secret : AllSecrets) {
        if (const auto given = environmentSecret(secret)) {
            MainQueue::shared().async([=, text = *given] { loading->take(secret, text); });
            continue;
        }
        store.read(secret, [=](const Result<std::optional<QString>> &read) {
            if (!read && !loading->failure && !read.error().localizedDescription.isEmpty())
                loading->failure = read.error();
            if (!read && !std::exchange(loading->hasComplained, true))
                qCWarning(log).noquote() << "secrets could not be read:" << read.error().detail;
            loading->take(secret, read ? read->value_or(QString()) : QString());
        });
    }
}
