#pragma once
#include <base/Result.h>
#include <functional>
#include <optional>

/// The secrets that the program keeps.
enum class Secret
{
    SubtitleKey,
    SubtitlePassword,
    MetadataKey
};

/// Keeps secrets. Main thread only; completions are called there on a later turn.
class SecretStore
{
public:
    using ReadCompletion = std::function<void(Result<std::optional<QString>>)>;
    using WriteCompletion = std::function<void(Result<void>)>;

    virtual ~SecretStore();

    /// None when the store has no such secret; an Error when the store cannot be read.
    virtual void read(Secret secret, ReadCompletion completion) = 0;
    /// An empty text removes the secret.
    virtual void write(Secret secret, const QString &text, WriteCompletion completion) = 0;

    /// The name under which a secret is kept.
    static QString nameOf(Secret secret);
};
