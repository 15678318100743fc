#pragma once
#include <net/secrets/SecretStore.h>
#include <memory>

/// Reads secrets from another store after the program's window was painted. Reaching a keyring loads
/// libraries and starts threads, which would delay the first appearance of the window.
class DeferredSecretStore final : public SecretStore
{
public:
    explicit DeferredSecretStore(std::shared_ptr<SecretStore> store);

    void read(Secret secret, ReadCompletion completion) override;
    void write(Secret secret, const QString &text, WriteCompletion completion) override;

private:
    std::shared_ptr<SecretStore> m_store;
};
