#pragma once
#include "Appcast.h"
#include "InstalledProgram.h"

#include <QDateTime>
#include <optional>

/// The date of a feed that the maker signed as a whole. A feed older than `newestSeen` (invalid for none) is
/// an error: somebody repeats it to hide what has come since. A plain function, any thread.
Result<QDateTime> checkedDate(const AppcastFeed &feed, const InstalledProgram &installed,
                              const QDateTime &newestSeen);

/// The newest version of a feed that this program may be replaced by: newer than the one installed, signed by
/// the maker, with an address that begins with https. A pre-release is for those alone who have one. Entries
/// that do not pass are left out; where that leaves none although a newer one was announced, it is an error.
/// A plain function, any thread.
Result<std::optional<AppcastItem>> chooseUpdate(const QList<AppcastItem> &items,
                                                const InstalledProgram &installed);
