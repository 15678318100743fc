#pragma once
#include "RestSession.h"

#include <base/Result.h>
#include <QUrl>

/// The order of a file, which costs one download: what it sends and what its answer says. Plain functions,
/// any thread.
namespace RestOrder
{
RestSession::Request request(qint64 fileNumber);
/// What the answer says of the downloads left; nothing when it says nothing.
std::optional<RestQuota> quotaAfter(const RestQuota &quota, const HttpAnswer &answer);
/// The link in the answer, once it is known to lead where it may. The session's quota is that of the answer.
Result<QUrl> linkFrom(const RestSession &session, const HttpAnswer &answer, const QDateTime &date);
/// The Error that says that no downloads are left.
Error limitReached(const RestSession &session, const QDateTime &date, const QString &detail);
} // namespace RestOrder
