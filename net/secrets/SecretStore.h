#pragma once
#include <base/Result.h>
#include <functional>
#include <optional>

/// What must not lie about.
enum class Secret
{
    SubtitleKey,
    SubtitlePassword,
    MetadataKey
};

/// Keeps secrets. Main thread only; completions come there, on a later turn.
class SecretStore
{
public:
    using ReadCompletion = std::function<void(Result<std::optional<QString>>)>;
    using WriteCompletion = std::function<void(Result<void>)>;

    virtual ~SecretStore();

    /// Nothing when none is kept; an Error when there is no telling.
    virtual void read(Secret secret, ReadCompletion completion) = 0;
    /// An empty text removes it.
    virtual void write(Secret secret, const QString &text, WriteCompletion completion) = 0;

    /// The name a secret is kept under.
    static QString nameOf(Secret secret);
};
