#pragma once
#include "SecretStore.h"

/// The secret that the environment gives (PLOVENDIX_SUBTITLE_API_KEY, PLOVENDIX_SUBTITLE_PASSWORD,
/// PLOVENDIX_METADATA_API_KEY), which overrides any store; nothing where the variable is unset or empty.
std::optional<QString> environmentSecret(Secret secret);
