#pragma once
#include <net/secrets/SecretStore.h>
#include <memory>

/// Reads secrets from another store, but only once the program's window has been painted: reaching a keyring
/// loads libraries and starts threads, and the window's first appearance should not wait for that.
class PatientSecretStore final : public SecretStore
{
public:
    explicit PatientSecretStore(std::shared_ptr<SecretStore> store);

    void read(Secret secret, ReadCompletion completion) override;
    void write(Secret secret, const QString &text, WriteCompletion completion) override;

private:
    std::shared_ptr<SecretStore> m_store;
};
