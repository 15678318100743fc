#pragma once
#include "RestLanguages.h"
#include "RestURL.h"

#include <base/Result.h>
#include <model/Query.h>
#include <functional>

using NameOfVideo = std::function<QString(const VideoHash &)>;

/// A query as parameters of the service. A hash is sent with the language and the name that `nameOf`
/// remembers for it. Words are sent as words, but a season and an episode in them as such; the year of a show
/// and the dots of an acronym stay with its title. `machineTranslated` asks for machine translations, too. An
/// Error for a language the service does not know, an invalid hash, and no words.
Result<RestURL::Parameters> queryParameters(const QList<Arg> &args, const NameOfVideo &nameOf,
                                            bool machineTranslated, const RestLanguages &known = {});
