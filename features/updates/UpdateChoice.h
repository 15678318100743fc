#pragma once
#include "Appcast.h"

#include <QDateTime>
#include <optional>

class Bundle;

/// The running program's data for updates. A plain value.
struct InstalledProgram
{
    QString identifier;
    QString version;
    QByteArray publicKey; // the key that updates must be signed with

    /// Read from the bundle's information dictionary; absent entries are empty.
    static InstalledProgram ofBundle(const Bundle &bundle);
};

/// The date of a feed, after checking the maker's signature of the whole feed. A feed older than `newestSeen`
/// (invalid for none) is an error, since replaying it would hide newer versions. A plain function, any
/// thread.
Result<QDateTime> checkedDate(const AppcastFeed &feed, const InstalledProgram &installed,
                              const QDateTime &newestSeen);

/// The newest version of a feed that may replace this program: newer than the installed one, signed by the
/// maker, with an https address. Pre-releases are only offered to pre-releases. Other entries are dropped; it
/// is an error when none is left although a newer one was announced. A plain function, any thread.
Result<std::optional<AppcastItem>> chooseUpdate(const QList<AppcastItem> &items,
                                                const InstalledProgram &installed);
