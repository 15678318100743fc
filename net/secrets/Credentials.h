#pragma once
#include "SecretStore.h"

/// The secrets in use. A plain value.
struct Credentials
{
    QString subtitleKey;
    QString subtitlePassword;
    QString metadataKey;

    QString &at(Secret secret);
    /// Stores the text and hides it from the log.
    void take(Secret secret, const QString &text);
    /// The text as it is sent: a line end pasted with a key would end a header. Passwords are not changed.
    static QString cleaned(Secret secret, const QString &text);

    bool operator==(const Credentials &) const = default;
};

/// The secret set in the environment (PLOVENDIX_SUBTITLE_API_KEY, PLOVENDIX_SUBTITLE_PASSWORD,
/// PLOVENDIX_METADATA_API_KEY), which overrides any store; none when the variable is unset or empty.
std::optional<QString> environmentSecret(Secret secret);
/// The secrets set in the environment, which are available at once.
Credentials environmentCredentials();

/// Takes the secrets, and the first Error of the store that has a sentence for the person.
using LoadCompletion =
    std::function<void(const Credentials &credentials, const std::optional<base::Error> &failure)>;

/// Reads all secrets, each from the environment or else from the store; one that cannot be read counts as
/// absent. All are hidden from the log. Calls `done` once, on a later turn of the main thread.
void loadCredentials(SecretStore &store, LoadCompletion done);
