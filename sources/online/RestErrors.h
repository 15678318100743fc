#pragma once
#include <net/HttpMessage.h>
#include <net/ServiceError.h>

/// What the service's refusals mean, by status first and body second. Plain functions, any thread.
namespace RestErrors
{
/// The token is missing, expired or forgotten: 401, or 406 and 500 whose body says so.
bool isTokenRefused(const HttpAnswer &answer);
/// The Error of any answer but a success. Quotas are RestQuota's to read.
Error error(const HttpAnswer &answer);
/// The same for the address of a file, which neither key nor login opens: refused, it is good no more.
Error linkError(const HttpAnswer &answer);
bool isLinkRefused(const HttpAnswer &answer);
/// The server's own words, as one line; empty when it gave none.
QString message(const HttpAnswer &answer);
} // namespace RestErrors
