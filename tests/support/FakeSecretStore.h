#pragma once
#include <base/MainQueue.h>
#include <net/secrets/SecretStore.h>
#include <QHash>
#include <QStringList>

/// A secret store in memory. It answers on a later turn of the main queue, unless the test says otherwise.
class FakeSecretStore final : public SecretStore
{
public:
    QHash<QString, QString> kept;       // by `nameOf`
    bool answersReads = true;           // false: a keyring that waits for its password
    std::optional<base::Error> failure; // of every read and write
    QStringList asked;                  // "read NAME" and "write NAME TEXT"

    void read(Secret secret, ReadCompletion completion) override
    {
        const QString name = nameOf(secret);
        asked += QStringLiteral("read ") + name;
        if (!answersReads)
            return;
        Result<std::optional<QString>> answer =
            kept.contains(name) ? std::optional(kept.value(name)) : std::nullopt;
        if (failure)
            answer = *failure;
        MainQueue::shared().async([=] { completion(answer); });
    }
    void write(Secret secret, const QString &text, WriteCompletion completion) override
    {
        asked += QStringLiteral("write %1 %2").arg(nameOf(secret), text);
        if (!failure)
            kept.insert(nameOf(secret), text);
        const Result<void> answer = failure ? Result<void>(*failure) : Result<void>();
        MainQueue::shared().async([=] { completion(answer); });
    }
};
