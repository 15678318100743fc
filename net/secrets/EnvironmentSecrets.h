#pragma once
#include "SecretStore.h"

/// The secret set in the environment (PLOVENDIX_SUBTITLE_API_KEY, PLOVENDIX_SUBTITLE_PASSWORD,
/// PLOVENDIX_METADATA_API_KEY), which overrides any store; none when the variable is unset or empty.
std::optional<QString> environmentSecret(Secret secret);
