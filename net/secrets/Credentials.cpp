#include "Credentials.h"

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
    bool isLogged = false;              // all secrets fail for the same reason
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

std::optional<QString> environmentSecret(Secret secret)
{
    const char *name = secret == Secret::SubtitleKey        ? "PLOVENDIX_SUBTITLE_API_KEY"
                       : secret == Secret::SubtitlePassword ? "PLOVENDIX_SUBTITLE_PASSWORD"
                                                            : "PLOVENDIX_METADATA_API_KEY";
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? std::nullopt : std::optional(value);
}

QString &Credentials::at(Secret secret)
{
    return secret == Secret::SubtitleKey        ? subtitleKey
           : secret == Secret::SubtitlePassword ? subtitlePassword
                                                : metadataKey;
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
            if (!read && !std::exchange(loading->isLogged, true))
                qCWarning(log).noquote() << "secrets could not be read:" << read.error().detail;
            loading->take(secret, read ? read->value_or(QString()) : QString());
        });
    }
}
