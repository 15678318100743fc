#include "KeychainSecretStore.h"

#include <platform/Bundle.h>
#include <platform/MainQueue.h>

#include <qt6keychain/keychain.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
const QString ServiceName = u"com.quorvane.Plovendix"_s;

Error refused(const QString &reason)
{
    return {u"Secrets"_s, 2,
            Bundle::main().localizedString(
                u"The keyring did not take the key, so it is kept only until the program ends."_s),
            reason};
}
} // namespace

KeychainSecretStore::KeychainSecretStore(AskForFile ask, const FileSecretStore &file, Keyring keyring)
    : m_ask(std::move(ask)),
      m_file(file),
      m_keyring(keyring),
      m_alive(std::make_shared<KeychainSecretStore *>(this))
{
}

void KeychainSecretStore::read(Secret secret, ReadCompletion completion)
{
    if (m_keyring == Keyring::Absent || m_file.find(secret)) {
        m_file.read(secret, std::move(completion));
        return;
    }
    auto *job = new QKeychain::ReadPasswordJob(ServiceName); // deletes itself
    job->setKey(nameOf(secret));
    QObject::connect(job, &QKeychain::Job::finished, job, [job, completion = std::move(completion)] {
        const QString text = job->textData();
        if (job->error() == QKeychain::NoError && !text.isEmpty())
            completion(std::optional(text));
        else if (job->error() == QKeychain::NoError || job->error() == QKeychain::EntryNotFound)
            completion(std::optional<QString>());
        else
            completion(refused(job->errorString()));
    });
    job->start();
}

void KeychainSecretStore::write(Secret secret, const QString &text, WriteCompletion completion)
{
    if (m_keyring == Keyring::Absent) {
        writeWithoutKeyring(secret, text, completion);
        return;
    }
    const auto finished = [weak = std::weak_ptr(m_alive), secret, text,
                           completion = std::move(completion)](QKeychain::Job *job) {
        const bool isStored = job->error() == QKeychain::NoError ||
                              (text.isEmpty() && job->error() == QKeychain::EntryNotFound);
        if (const auto alive = weak.lock())
            (*alive)->finishWrite(secret, text, isStored, job->errorString(), completion);
    };
    if (text.isEmpty()) {
        auto *job = new QKeychain::DeletePasswordJob(ServiceName);
        job->setKey(nameOf(secret));
        QObject::connect(job, &QKeychain::Job::finished, job, finished);
        job->start();
        return;
    }
    auto *job = new QKeychain::WritePasswordJob(ServiceName);
    job->setKey(nameOf(secret));
    job->setTextData(text);
    QObject::connect(job, &QKeychain::Job::finished, job, finished);
    job->start();
}

void KeychainSecretStore::writeWithoutKeyring(Secret secret, const QString &text,
                                              const WriteCompletion &completion)
{
    MainQueue::shared().async([weak = std::weak_ptr(m_alive), secret, text, completion] {
        if (const auto alive = weak.lock())
            (*alive)->finishWrite(secret, text, false, u"there is no session bus"_s, completion);
    });
}

void KeychainSecretStore::finishWrite(Secret secret, const QString &text, bool isStored,
                                      const QString &reason, const WriteCompletion &completion)
{
    if (isStored || text.isEmpty()) {
        // Removing needs nobody's leave: what the file still has must not come back.
        const Result<void> removed = m_file.store(secret, {});
        completion(isStored || removed ? removed : Result<void>(refused(reason)));
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
