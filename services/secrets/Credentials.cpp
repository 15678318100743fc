#include "Credentials.h"

#include "EnvironmentSecrets.h"

#include <platform/MainQueue.h>
#include <services/net/Redactor.h>

#include <QLoggingCategory>

#include <memory>

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.services.secrets", QtInfoMsg)

struct Loading
{
    Credentials credentials;
    int missing = 3;
    std::function<void(Credentials)> done;

    void take(QString Credentials::*member, const QString &text, bool isPassword)
    {
        // A line end pasted with a key would end a header. A password is taken as it is.
        const QString value = isPassword ? text : text.simplified();
        hideSecret(value);
        credentials.*member = value;
        if (--missing == 0)
            done(credentials);
    }
};
} // namespace

void loadCredentials(SecretStore &store, std::function<void(Credentials)> done)
{
    auto loading = std::make_shared<Loading>();
    loading->done = std::move(done);
    const std::pair<Secret, QString Credentials::*> members[] = {
        {Secret::SubtitleKey, &Credentials::subtitleKey},
        {Secret::SubtitlePassword, &Credentials::subtitlePassword},
        {Secret::MetadataKey, &Credentials::metadataKey}};
    for (const auto &[secret, member] : members) {
        const bool isPassword = secret == Secret::SubtitlePassword;
        if (const auto given = environmentSecret(secret)) {
            MainQueue::shared().async(
                [=, text = *given, member = member] { loading->take(member, text, isPassword); });
            continue;
        }
        store.read(secret, [=, member = member](const Result<std::optional<QString>> &read) {
            if (!read)
                qCWarning(log).noquote() << "a secret could not be read:" << read.error().detail;
            loading->take(member, read ? read->value_or(QString()) : QString(), isPassword);
        });
    }
}
