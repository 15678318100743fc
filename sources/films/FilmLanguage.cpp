#include "FilmLanguage.h"

#include <QHash>

using namespace Qt::StringLiterals;

QString filmLanguage(const QString &twoLetterCode)
{
    // Codes that only the subtitle services use, and languages that differ by country.
    static const QHash<QString, QString> tags{
        {u"pb"_s, u"pt-BR"_s}, {u"pt"_s, u"pt-PT"_s}, {u"pm"_s, u"pt-PT"_s}, {u"zh"_s, u"zh-CN"_s},
        {u"ze"_s, u"zh-CN"_s}, {u"zt"_s, u"zh-TW"_s}, {u"ea"_s, u"es-MX"_s}, {u"sp"_s, u"es-ES"_s},
        {u"pr"_s, u"fa"_s},    {u"me"_s, u"sr"_s},    {u"at"_s, u"es-ES"_s}, {u"ex"_s, u"es-ES"_s},
        {u"en"_s, u"en-US"_s}, {u"iw"_s, u"he"_s},    {u"in"_s, u"id"_s},    {u"ji"_s, u"yi"_s},
        {u"mo"_s, u"ro"_s},    {u"ma"_s, u"en-US"_s}, {u"sy"_s, u"en-US"_s}, {u"sx"_s, u"en-US"_s},
        {u"tp"_s, u"en-US"_s}};
    const QString code = twoLetterCode.trimmed().toLower();
    const bool isCode =
        code.size() == 2 && code[0] >= u'a' && code[0] <= u'z' && code[1] >= u'a' && code[1] <= u'z';
    return isCode ? tags.value(code, code) : u"en-US"_s;
}
