#pragma once
#include "SecretStore.h"

/// Keeps secrets in a file with mode 0600, for machines without a keyring and only after the person agreed.
/// An unreadable file is renamed to "NAME.damaged-N" before the first write. Main thread only.
class FileSecretStore final : public SecretStore
{
public:
    explicit FileSecretStore(const QString &path = standardPath());
    static QString standardPath();

    void read(Secret secret, ReadCompletion completion) override;
    void write(Secret secret, const QString &text, WriteCompletion completion) override;

    /// None where there is no such secret; an Error for a file that cannot be read.
    Result<std::optional<QString>> lookUp(Secret secret) const;
    Result<void> store(Secret secret, const QString &text) const;

private:
    QString m_path;
};
