#pragma once
#include "FileSecretStore.h"

/// Keeps secrets in the system's keyring. Where it is absent, locked or says no, the person is asked before
/// anything is kept in a file instead. Main thread only.
class KeychainSecretStore final : public SecretStore
{
public:
    /// Asks whether a file may be used and hands the answer to what it is given. `reason` is the keyring's
    /// own word.
    using AskForFile = std::function<void(const QString &reason, std::function<void(bool)> answer)>;

    enum class Keyring
    {
        Asked,
        Absent // asking for one would start things that nobody wants
    };

    KeychainSecretStore(AskForFile ask, const FileSecretStore &file, Keyring keyring = Keyring::Asked);

    /// The file first, where there is one: it holds what the keyring did not take, and so the later word.
    /// A file that cannot be read is an Error unless the keyring has the secret. The Error of a keyring that
    /// does not open has no sentence.
    void read(Secret secret, ReadCompletion completion) override;
    /// What the keyring takes is removed from the file. An Error of removing means that the keyring still has
    /// it.
    void write(Secret secret, const QString &text, WriteCompletion completion) override;

private:
    enum class Answer
    {
        Taken,
        Refused,
        None // there may be no keyring at all
    };

    void removeEmptied(Secret secret, const WriteCompletion &completion);
    void writeWithoutKeyring(Secret secret, const QString &text, const WriteCompletion &completion);
    void finishWrite(Secret secret, const QString &text, Answer answer, const QString &reason,
                     const WriteCompletion &completion);

    AskForFile m_ask;
    FileSecretStore m_file;
    Keyring m_keyring;
    std::shared_ptr<KeychainSecretStore *> m_alive;
};
