// The feed of versions and its notes: nothing without the maker's signature is offered, notes stay plain
// text.
#include "Oracle.h"

#include <features/updates/Appcast.h>
#include <features/updates/AppcastSignature.h>
#include <features/updates/ReleaseNotes.h>
#include <features/updates/UpdateChoice.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
void readNotes(const QString &notes)
{
    const QString plain = plainReleaseNotes(notes);
    require(std::none_of(plain.cbegin(), plain.cend(),
                         [](QChar sign) {
                             return sign.category() == QChar::Other_Control && sign != u'\n' && sign != u'\t';
                         }),
            "notes have no control characters");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const InstalledProgram installed = [] {
        InstalledProgram program;
        program.identifier = u"com.quorvane.Plovendix"_s;
        program.version = u"1.0"_s;
        program.publicKey = AppcastSignature::makeKeyPair().publicKey;
        return program;
    }();
    const TimeLimit limit(3000 + static_cast<double>(size) / 5);
    const QByteArray bytes = bytesOf(data, size);
    readNotes(QString::fromUtf8(bytes));
    const auto feed = Appcast::parse(bytes);
    if (!feed)
        return 0;
    require(!checkedDate(*feed, installed, {}), "a feed without the maker's signature has no date");
    const auto choice = chooseUpdate(feed->items, installed);
    require(!choice || !*choice, "a version without the maker's signature is not offered");
    for (const AppcastItem &item : feed->items)
        readNotes(item.notes);
    return 0;
}
