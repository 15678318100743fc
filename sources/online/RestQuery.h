#pragma once
#include "RestLanguageList.h"
#include "RestURL.h"

#include <base/Result.h>
#include <model/Query.h>
#include <functional>

/// A query as parameters of the service.
struct RestQuery
{
    using NameOf = std::function<QString(const VideoHash &)>;

    RestURL::Parameters parameters;

    /// A hash is sent with the language and, beside it, the name that `nameOf` remembers for it; words are
    /// sent as words, but a season and an episode in them as what they are; the year of a show and the dots
    /// of an acronym stay with its title. `machineTranslated` asks for those as
    /// well. An Error for a language the service does not know, a hash that is none, and no words.
    static Result<RestQuery> from(const QList<Arg> &args, const NameOf &nameOf, bool machineTranslated,
                                  const RestLanguageList &known = {});
};
