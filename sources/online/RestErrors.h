#pragma once
#include <net/HttpMessage.h>
#include <net/ServiceError.h>

/// Maps the service's refusals to errors, by status first and body second. Plain functions, any thread.
namespace RestErrors
{
/// The token is missing, expired or unknown: 401, or 406 and 500 with such a body.
bool isTokenRefused(const HttpAnswer &answer);
/// The Error of any unsuccessful answer. RestQuota reads the quotas.
base::Error error(const HttpAnswer &answer);
/// For download links: refusal means the link expired.
base::Error linkError(const HttpAnswer &answer);
bool isLinkRefused(const HttpAnswer &answer);
/// The server's message on one line; empty when it sent none.
QString message(const HttpAnswer &answer);
} // namespace RestErrors
