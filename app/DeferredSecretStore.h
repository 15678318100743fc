#pragma once
#include <net/secrets/SecretStore.h>
#include <memory>

/// Reads secrets from another store, but only once the program's window has been painted: reaching a keyring
/// loads libraries and starts threads, and the window's first appearance should not wait for that.
class DeferredSecretStore final : public SecretStore
{
public:
    explicit DeferredSecretStore(std::shared_ptr<SecretStore> store);

    void read(Secret secret, ReadCompletion completion) override;
    void write(Secret secret, const QString &text, WriteCompletion completion) override;

private:
    std::shared_ptr<SecretStore> m_store;
};
