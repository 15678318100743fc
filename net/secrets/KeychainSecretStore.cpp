#include "KeychainSecretStore.h"

#include <base/LocalizedString.h>
#include <base/MainQueue.h>

#include <qt6keychain/keychain.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
const QString ServiceName = u"com.quorvane.Plovendix"_s;

base::Error refused(const QString &reason)
{
    return {
        u"Secrets"_s, 2,
        String::localize(u"The keyring did not take the key, so it is kept only until the program ends."_s),
        reason};
}

/// Without a sentence: the desktop has asked the person itself, or there is no keyring.
base::Error notOpened(const QString &reason)
{
    return {u"Secrets"_s, 5, {}, reason};
}

base::Error stillThere(const QString &reason)
{
    return {
        u"Secrets"_s, 3,
        String::localize(
            u"The keyring is locked and still has the key. Open it and remove the key once more, or it is "
            u"used again when the program starts."_s),
        reason};
}

bool isRefusal(QKeychain::Error error)
{
    return error == QKeychain::AccessDenied || error == QKeychain::AccessDeniedByUser;
}
} // namespace

KeychainSecretStore::KeychainSecretStore(AskForFile ask, const FileSecretStore &file, Keyring keyring)
    : m_ask(std::move(ask)), m_file(file), m_keyring(keyring)
{
}

void KeychainSecretStore::read(Secret secret, ReadCompletion completion)
{
    const Result<std::optional<QString>> inFile = m_file.lookUp(secret);
    if (m_keyring == Keyring::Absent || (inFile && *inFile)) {
        m_file.read(secret, std::move(completion));
        return;
    }
    auto *job = new QKeychain::ReadPasswordJob(ServiceName); // deletes itself
    job->setKey(nameOf(secret));
    QObject::connect(job, &QKeychain::Job::finished, job, [job, inFile, completion = std::move(completion)] {
        const QString text = job->textData();
        if (job->error() == QKeychain::NoError && !text.isEmpty())
            completion(std::optional(text));
        else if (!inFile)
            completion(inFile.error());
        else if (job->error() == QKeychain::NoError || job->error() == QKeychain::EntryNotFound)
            completion(std::optional<QString>());
        else
            completion(notOpened(job->errorString()));
    });
    job->start();
}

void KeychainSecretStore::write(Secret secret, const QString &text, WriteCompletion completion)
{
    if (m_keyring == Keyring::Absent) {
        MainQueue::shared().async(&m_context, [this, secret, text, completion] {
            finishWrite(secret, text, Answer::None, u"there is no session bus"_s, completion);
        });
        return;
    }
    // Also used to remove: a locked keyring reports success for a deletion without doing it, but refuses to
    // overwrite.
    auto *job = new QKeychain::WritePasswordJob(ServiceName);
    job->setKey(nameOf(secret));
    job->setTextData(text);
    QObject::connect(job, &QKeychain::Job::finished, &m_context,
                     [this, secret, text, completion = std::move(completion)](QKeychain::Job *done) {
                         const Answer answer = done->error() == QKeychain::NoError ? Answer::Taken
                                               : isRefusal(done->error())          ? Answer::Refused
                                                                                   : Answer::None;
                         if (answer == Answer::Taken && text.isEmpty())
                             removeEmptied(secret, completion);
                         else
                             finishWrite(secret, text, answer, done->errorString(), completion);
                     });
    job->start();
}

/// An entry that remains is empty, which counts as absent.
void KeychainSecretStore::removeEmptied(Secret secret, const WriteCompletion &completion)
{
    auto *job = new QKeychain::DeletePasswordJob(ServiceName);
    job->setKey(nameOf(secret));
    QObject::connect(job, &QKeychain::Job::finished, &m_context,
                     [this, secret, completion] { finishWrite(secret, {}, Answer::Taken, {}, completion); });
    job->start();
}

void KeychainSecretStore::finishWrite(Secret secret, const QString &text, Answer answer,
                                      const QString &reason, const WriteCompletion &completion)
{
    if (answer == Answer::Taken || text.isEmpty()) {
        // Removing needs no consent: a copy in the file must not come back.
        const Result<void> removed = m_file.store(secret, {});
        completion(answer == Answer::Refused ? Result<void>(stillThere(reason)) : removed);
        return;
    }
    if (!m_ask) {
        completion(refused(reason));
        return;
    }
    m_ask(reason, [file = m_file, secret, text, reason, completion](bool agreed) {
        completion(agreed ? file.store(secret, text) : Result<void>(refused(reason)));
    });
}
