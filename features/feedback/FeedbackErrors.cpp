#include "FeedbackErrors.h"

#include <base/LocalizedString.h>
#include <net/Redactor.h>

using namespace Qt::StringLiterals;

namespace
{
QString sentence(FeedbackFault fault)
{
    switch (fault) {
    case FeedbackFault::ForbiddenAddress:
        return String::localize(
            u"The service cannot be asked at the address in the settings: it must begin with https."_s);
    case FeedbackFault::Offline:
        return String::localize(u"There is no connection to the maker’s server."_s);
    case FeedbackFault::Timeout:
        return String::localize(u"The maker’s server did not answer in time."_s);
    case FeedbackFault::Unavailable:
        return String::localize(u"The maker’s server is not available right now."_s);
    case FeedbackFault::Insecure:
        return String::localize(u"No private connection to the maker’s server could be made."_s);
    case FeedbackFault::Proxy:
        return String::localize(
            u"The proxy of this network refused the connection. Check the proxy settings of this "
            "computer."_s);
    case FeedbackFault::Refused:
        return String::localize(u"The maker’s server did not take the report."_s);
    }
    return {};
}
} // namespace

base::Error feedbackError(FeedbackFault fault, const QString &detail)
{
    return {u"Feedback"_s, static_cast<int>(fault), sentence(fault), redacted(detail)};
}
