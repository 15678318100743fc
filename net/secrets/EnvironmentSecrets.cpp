#include "EnvironmentSecrets.h"

std::optional<QString> environmentSecret(Secret secret)
{
    const char *name = secret == Secret::SubtitleKey        ? "PLOVENDIX_SUBTITLE_API_KEY"
                       : secret == Secret::SubtitlePassword ? "PLOVENDIX_SUBTITLE_PASSWORD"
                                                            : "PLOVENDIX_METADATA_API_KEY";
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? std::nullopt : std::optional(value);
}
