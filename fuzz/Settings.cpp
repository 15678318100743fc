// Settings: any file opens or is refused, and what is written reads back.
#include "Oracle.h"

#include <base/SettingsFile.h>

using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const TimeLimit limit(500 + static_cast<double>(size) / 50);
    const auto file = SettingsFile::parsed(bytesOf(data, size));
    if (!file)
        return 0;
    const SettingsFile::Values values = file->values();

    // A text of the input itself, so that the fuzzer finds spellings that do not come back.
    const QString text = QString::fromUtf8(bytesOf(data, size)).left(200);
    const SettingsFile::Values changes{{u"languageCode"_s, text}, {u"added"_s, 7}, {u"gone"_s, QVariant()}};
    const auto changed = SettingsFile::parsed(file->bytesWith(changes));
    require(changed.has_value(), "what was written can be read");
    const SettingsFile::Values after = changed->values();
    require(after.value(u"languageCode"_s) == SettingsFile::readBack(text), "a text reads back as promised");
    require(after.value(u"added"_s).toInt() == 7, "a number reads back");
    require(!after.contains(u"gone"_s), "a removed key is gone");
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        if (!changes.contains(entry.key()))
            require(after.value(entry.key()) == entry.value(), "the other values stay");
    }
    return 0;
}
