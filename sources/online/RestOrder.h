#pragma once
#include "RestSession.h"

#include <base/Result.h>
#include <QUrl>

/// The request for a download link, which costs one download, and its answer. Plain functions, any thread.
namespace RestOrder
{
RestSession::Request request(qint64 fileNumber);
/// The remaining downloads in the answer; none when it does not say.
std::optional<RestQuota> quotaAfter(const RestQuota &quota, const HttpAnswer &answer);
/// The link in the answer, if its host is allowed. The session's quota must be that of the answer.
Result<QUrl> linkFrom(const RestSession &session, const HttpAnswer &answer, const QDateTime &date);
/// The Error for a used-up quota.
base::Error limitReached(const RestSession &session, const QDateTime &date, const QString &detail);
} // namespace RestOrder
