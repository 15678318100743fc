#include "Behaviours.h"

using namespace Qt::StringLiterals;

namespace
{
struct Description
{
    const char *name;
    const char *meaning;
};

constexpr Description Known[] = {
    {"redirect-loop", "a search is sent around in circles"},
    {"redirect-abroad", "a search is sent to another port"},
    {"unknown-key", "no API key is accepted"},
    {"vip", "the login names the second port, which wants the token on every request"},
    {"vip-elsewhere", "the login names a host that is not the service's"},
    {"short-token", "tokens end in five minutes"},
    {"token-gone", "the first token turns out invalid: 401"},
    {"token-gone-406", "the first token turns out invalid: 406"},
    {"token-gone-500", "the first token turns out invalid: 500"},
    {"token-refused", "every token is invalid"},
    {"too-fast", "429, Retry-After: 1"},
    {"too-fast-once", "429 once, Retry-After: 1"},
    {"too-fast-silent", "429 without a header"},
    {"too-fast-date", "429, Retry-After as a date in ten seconds"},
    {"too-fast-hour", "429, Retry-After: 3600"},
    {"quota-used", "no downloads left"},
    {"quota-reset-past", "the quota's reset lies in the past"},
    {"quota-reset-soon", "the quota is reset in two minutes"},
    {"account-wanted", "downloads are for those with an account"},
    {"invalid-file", "406 without a quota: Invalid file_id"},
    {"invalid-file-counted", "the same with what is left, which is more than nothing"},
    {"hits-0", "nothing found"},
    {"hits-1", "one record"},
    {"hits-50", "one page"},
    {"hits-51", "two pages, the last with one record"},
    {"hits-1502", "31 pages"},
    {"pages-too-many", "total_pages is ten too large"},
    {"page-empty", "the second page is empty"},
    {"page-repeats", "every page is the first"},
    {"odd-records", "nulls, ids as text, no files, nine files, names of every kind"},
    {"one-name", "12,000 records of one name on one page"},
    {"unreadable-records", "no record can be read"},
    {"one-bad-record", "a number and a text among the records"},
    {"mixed-matches", "records with and without a match of the hash"},
    {"gzip", "gzip where the client offers it"},
    {"gzip-unasked", "gzip in any case"},
    {"gzip-bomb", "a small body that unpacks to 16 MiB"},
    {"chunked", "in chunks"},
    {"drip", "a byte at a time"},
    {"stall", "nothing after the headers"},
    {"silent", "no answer at all"},
    {"length-too-long", "Content-Length promises more than comes"},
    {"chunked-without-end", "chunks without the last one"},
    {"close-before", "the connection closes instead of an answer"},
    {"close-once", "the same, once"},
    {"close-after", "the connection closes after the answer, unannounced"},
    {"empty", "200 with nothing"},
    {"no-content", "204"},
    {"not-modified", "304 though nothing was asked"},
    {"html", "an HTML page with 200"},
    {"sign-in-page", "a redirect to the sign-in page of a hotel"},
    {"sign-in-511", "a network that says it wants a sign-in"},
    {"array", "a JSON array"},
    {"null", "JSON null"},
    {"as-text", "right JSON called text/plain"},
    {"bad-utf8", "JSON with bytes that are not UTF-8"},
    {"bom", "right JSON after a byte order mark"},
    {"cut", "JSON cut in the middle"},
    {"20-mib", "20 MiB of JSON"},
    {"down", "503"},
    {"down-once", "503 once"},
    {"broken", "500"},
    {"gateway-page", "502 with an HTML page"},
    {"bad-request", "400 with an empty body and X-Reason"},
    {"subtitle-gzip", "the subtitle comes as a .gz file"},
    {"subtitle-zip", "the subtitle comes in a ZIP archive"},
    {"subtitle-zip-damaged", "the same, after an entry that is damaged"},
    {"subtitle-zip-locked", "the same, after an entry that a password locks"},
    {"subtitle-zip-shut", "a ZIP archive with nothing but an entry that a password locks"},
    {"subtitle-rar", "the subtitle comes in a RAR archive"},
    {"subtitle-gif", "a picture as subtitle"},
    {"subtitle-html", "a page as subtitle"},
    {"subtitle-notice", "a notice of two lines as subtitle"},
    {"subtitle-short", "a cue of fewer bytes than any subtitle has"},
    {"subtitle-empty", "an empty subtitle"},
    {"subtitle-304", "304 as subtitle"},
    {"subtitle-utf16", "the subtitle in UTF-16"},
    {"subtitle-1252", "the subtitle in windows-1252"},
    {"subtitle-bomb", "a .gz that unpacks to 16 MiB"},
    {"subtitle-9-mib", "9 MiB of subtitle"},
    {"link-once", "a link serves one transfer"},
    {"link-expired", "410 on the link"},
    {"link-forbidden", "403 on the link"},
    {"link-gone", "404 on the link"},
    {"link-clear", "the link is http on a public host"},
    {"link-foreign", "the link leads to a foreign host"},
    {"link-missing", "no link in the answer"},
    {"link-name-path", "the file's name has a path in it"},
    {"film-key-refused", "401, code 7"},
    {"film-too-fast", "429, code 25, once"},
    {"film-not-found", "404, code 34"},
    {"film-no-store", "answers that nobody may keep"},
    {"poster-html", "a page as poster"},
    {"poster-cut", "a poster cut in the middle"},
    {"poster-huge", "a poster of 20,000 pixels"},
    {"poster-changes", "posters have no lasting ETag"},
};

bool isKnown(const QString &name)
{
    return std::any_of(std::begin(Known), std::end(Known),
                       [&](const Description &known) { return name == QLatin1StringView(known.name); });
}
} // namespace

void Behaviours::select(const QString &behaviour)
{
    if (!isKnown(behaviour.section(u'@', 0, 0)))
        qFatal("The stand-in knows no behaviour \"%s\"", qUtf8Printable(behaviour));
    m_selected += behaviour;
}

void Behaviours::clear()
{
    m_selected.clear();
}

bool Behaviours::has(QLatin1StringView name) const
{
    return m_selected.contains(name);
}

bool Behaviours::has(QLatin1StringView name, QLatin1StringView endpoint) const
{
    return m_selected.contains(name + "@"_L1 + endpoint) || (endpoint == "search"_L1 && has(name));
}

bool Behaviours::takeOnce(QLatin1StringView name, QLatin1StringView endpoint)
{
    return m_selected.remove(name + "@"_L1 + endpoint) ||
           (endpoint == "search"_L1 && m_selected.remove(name));
}

QStringList Behaviours::descriptions()
{
    QStringList lines;
    for (const Description &known : Known)
        lines += QString::fromLatin1(known.name) + u": "_s + QString::fromLatin1(known.meaning);
    return lines;
}
