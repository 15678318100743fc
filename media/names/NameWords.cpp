#include "NameWords.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace
{
struct Row
{
    WordKind kind;
    WordStrength strength;
    const char *words;
};

// Words of two parts ("Blu-ray", "H.264") stand here joined; the parts are looked up together first.
constexpr Row Rows[] = {
    {WordKind::Resolution, WordStrength::Strong,
     "360p 480p 480i 540p 576p 576i 720p 720i 1080p 1080i 1440p 2160p 4320p 720 1080 2160 hd720p "
     "hd1080p mhd ultrahd halfsbs hsbs hou 50fps 60fps 24p fullhd fhd"},
    {WordKind::Resolution, WordStrength::Weak, "4k 8k uhd hd sd hq 3d sbs 576 480"},
    {WordKind::Source, WordStrength::Strong,
     "bluray bdrip brrip bdremux bdscr bdmv bd25 bd50 dvdrip dvdr dvdr9 dvd5 dvd9 dvdscr dvdscreener "
     "hddvd hddvdrip hdtv hdtvrip pdtv sdtv ldtv uhdtv dsr dsrip dthrip dvb dvbrip tvrip satrip hdrip "
     "hdtc hdts hdcam webrip webdl webhd webcap vodrip ppvrip vhsrip vhs camrip telesync telecine "
     "workprint screener predvdrip predvd remux webdlrip bdmux bdripmux brmux xxx microhd ahdtv hd2dvd "
     "uhdrip uhdbdrip hdlight"},
    {WordKind::Source, WordStrength::Weak,
     "web dvd bd blu ray ts tc cam scr r5 r6 ppv vod dl br rip hdmv pal ntsc amzn nf dsnp dsny hmax atvp "
     "pcok pmtp itunes netflix hulu"},
    {WordKind::VideoCodec, WordStrength::Strong,
     "x264 x265 h264 h265 hevc xvid divx avc 10bit 8bit 10bits hi10p hi10 vc1 mpeg2 mpeg4 vp8 vp9 av1 "
     "rv10 hdr10 hdr10plus dolbyvision hdrplus"},
    {WordKind::VideoCodec, WordStrength::Weak, "hdr dv sdr 264 265 hfr"},
    {WordKind::Audio, WordStrength::Strong,
     "aac aac2 aac5 aac1 ac3 ac3d eac3 dts dtshd dtsma dtsx dtsx7 dd2 dd5 ddp ddp2 ddp5 ddp7 ddpa "
     "ddpa5 dd51 ddp51 truehd truehd7 atmos flac mp3 vorbis lpcm dualaudio 6ch 8ch 2ch"},
    {WordKind::Audio, WordStrength::Weak, "dd ma hd opus ogg pcm dual audio mic md ld line dubbed dub"},
    {WordKind::Edition, WordStrength::Weak,
     "extended unrated uncut remastered directors director cut dc se ce uncensored criterion edition "
     "imax theatrical special final limited collectors anniversary rated open matte ultimate "
     "despecialized restored alternative hybrid"},
    {WordKind::Language, WordStrength::Strong,
     "vostfr vostf subfrench truefrench vff vfq vost vostg nlsubs legendado"},
    {WordKind::Language, WordStrength::Weak,
     "english eng french fre fra german ger deu spanish spa esp castellano latino italian ita "
     "portuguese por ptbr brazilian japanese jpn jap korean kor chinese chi russian rus polish pol "
     "plsub dutch nld flemish swedish swe swesub norwegian norsk danish dan finnish fin hebrew heb "
     "arabic ara turkish tur greek hungarian hun czech cze ukrainian ukr hindi hin tamil telugu tel "
     "urdu catalan nordic multi multisubs multisub msubs esub esubs vf malayalam kannada bengali marathi "
     "punjabi gujarati "
     "vietnamese thai indonesian romanian croatian serbian bulgarian slovak estonian persian icelandic "
     "lektor vo sub subs subbed fr pl dksubs "
     "subtitles subtitled vose"},
    {WordKind::Remark, WordStrength::Strong, "repack rerip mkv mp4 avi readnfo dirfix nfofix fastsub"},
    {WordKind::Remark, WordStrength::Weak,
     "proper real internal limited festival stv complete retail ws fs hc hardcoded convert upscaled "
     "digital extras read nfo dubbed doku docu sample"},
};

bool isDigits(QStringView text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// "5AF6F1E4": a checksum in the name. Eight digits alone are rather a date.
bool isChecksum(const QString &word)
{
    const auto isHexDigit = [](QChar c) { return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f'); };
    return word.size() == 8 && std::all_of(word.begin(), word.end(), isHexDigit) &&
           std::any_of(word.begin(), word.end(), [](QChar c) { return c >= u'a'; }) &&
           std::any_of(word.begin(), word.end(), [](QChar c) { return c <= u'9'; });
}

/// "v2": the second version of a release.
bool isVersion(const QString &word)
{
    return word.size() == 2 && word[0] == u'v' && word[1] >= u'0' && word[1] <= u'9';
}

/// "1036p", "1080i", "48fps": a number of lines or frames.
bool isPictureMeasure(const QString &word)
{
    qsizetype digits = 0;
    while (digits < word.size() && word[digits] >= u'0' && word[digits] <= u'9')
        ++digits;
    const QStringView unit = QStringView(word).mid(digits);
    const bool countsLines =
        digits >= 3 && digits <= 4 && (unit == QStringView(u"p") || unit == QStringView(u"i"));
    const bool countsFrames = digits >= 2 && digits <= 3 && unit == QStringView(u"fps");
    return countsLines || countsFrames;
}

/// "tt1234567": a film's number.
bool isFilmNumber(const QString &word)
{
    return word.size() >= 9 && word.size() <= 10 && word.startsWith(u"tt") &&
           isDigits(QStringView(word).mid(2));
}

/// "CD1", "DVD2", "disc1": one of several files or discs.
bool isDisc(const QString &word)
{
    for (const QLatin1StringView medium : {QLatin1StringView("cd"), QLatin1StringView("dvd"),
                                           QLatin1StringView("disc"), QLatin1StringView("disk")}) {
        if (word.size() == medium.size() + 1 && word.startsWith(medium) && word.back() >= u'1' &&
            word.back() <= u'9')
            return true;
    }
    return false;
}

/// "1920x1080" and the like.
bool isFrameSize(const QString &word)
{
    const qsizetype cross = word.indexOf(u'x');
    return cross >= 3 && cross <= 4 && word.size() - cross - 1 >= 3 && word.size() - cross - 1 <= 4 &&
           isDigits(QStringView(word).left(cross)) && isDigits(QStringView(word).mid(cross + 1));
}

const QHash<QString, WordClass> &table()
{
    static const QHash<QString, WordClass> instance = [] {
        QHash<QString, WordClass> words;
        for (const Row &row : Rows) {
            for (const QString &word : QString::fromLatin1(row.words).split(u' ', Qt::SkipEmptyParts)) {
                if (!words.contains(word))
                    words.insert(word, {row.kind, row.strength});
            }
        }
        return words;
    }();
    return instance;
}
} // namespace

WordClass classOfWord(const QString &word)
{
    if (isFrameSize(word) || isPictureMeasure(word))
        return {WordKind::Resolution, WordStrength::Strong};
    if (isChecksum(word) || isVersion(word) || isDisc(word) || isFilmNumber(word))
        return {WordKind::Remark, WordStrength::Strong};
    return table().value(word);
}

WordClass classOfJoinedWords(const QString &joined)
{
    return table().value(joined);
}
