#pragma once
#include "Appcast.h"
#include "InstalledProgram.h"

#include <optional>

/// The newest version of a feed that this program may be replaced by: newer than the one installed, signed by
/// the maker, with an address that begins with https. A pre-release is for those alone who have one. Entries
/// that do not pass are left out; where that leaves none although a newer one was announced, it is an error.
/// A plain function, any thread.
Result<std::optional<AppcastItem>> chooseUpdate(const QList<AppcastItem> &items,
                                                const InstalledProgram &installed);
