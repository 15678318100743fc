#pragma once
#include "FileSecretStore.h"

#include <QObject>

/// Keeps secrets in the system's keyring. When that is absent, locked or refuses, the person is asked before
/// a secret is kept in a file instead. Main thread only.
class KeychainSecretStore final : public SecretStore
{
public:
    /// Asks whether a file may be used and calls the function with the answer. `reason` is the keyring's
    /// message.
    using AskForFile = std::function<void(const QString &reason, std::function<void(bool)> answer)>;

    enum class Keyring
    {
        Asked,
        Absent // a request would start unwanted services
    };

    KeychainSecretStore(AskForFile ask, const FileSecretStore &file, Keyring keyring = Keyring::Asked);

    /// Reads the file first: it holds secrets that the keyring refused, which are newer.
    void read(Secret secret, ReadCompletion completion) override;
    /// A secret that the keyring accepts is removed from the file. An Error on removal means that the keyring
    /// still has the secret.
    void write(Secret secret, const QString &text, WriteCompletion completion) override;

private:
    enum class Answer
    {
        Taken,
        Refused,
        None // there may be no keyring
    };

    void removeEmptied(Secret secret, const WriteCompletion &completion);
    void finishWrite(Secret secret, const QString &text, Answer answer, const QString &reason,
                     const WriteCompletion &completion);

    AskForFile m_ask;
    FileSecretStore m_file;
    Keyring m_keyring;
    QObject m_context; // of the jobs that answer this object
};
