#include "NameWords.h"

#include "RuleWords.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

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

/// "5AF6F1E4": a checksum in the name. Eight digits alone are rather a date.
bool isChecksum(const QString &word)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    const auto isHexLetter = [](QChar c) { return c >= u'a' && c <= u'f'; };
    const auto digits = std::count_if(word.begin(), word.end(), isDigit);
    const auto letters = std::count_if(word.begin(), word.end(), isHexLetter);
    return word.size() == 8 && digits + letters == 8 && digits > 0 && letters > 0;
}

/// "1036p", "1080i", "48fps", "1920x1080": a number of lines or frames, or a frame's size.
bool isPictureMeasure(const QString &word)
{
    WordReader lines(word);
    WordReader frames(word);
    WordReader size(word);
    return (lines.number(4, 3) && lines.takeAny({"p"_L1, "i"_L1}) && lines.atEnd()) ||
           (frames.number(3, 2) && frames.take("fps"_L1) && frames.atEnd()) ||
           (size.number(4, 3) && size.take("x"_L1) && size.number(4, 3) && size.atEnd());
}

/// "v2", "CD1", "tt1234567": the version of a release, one of its discs, the number of a film.
bool isNumberedRemark(const QString &word)
{
    WordReader version(word);
    WordReader disc(word);
    WordReader film(word);
    return (version.numberAfter({"v"_L1}, 1) && version.atEnd()) ||
           (disc.numberAfter({"cd"_L1, "dvd"_L1, "disc"_L1, "disk"_L1}, 1).value_or(0) > 0 && disc.atEnd()) ||
           (film.take("tt"_L1) && film.number(8, 7) && film.atEnd());
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
    if (isPictureMeasure(word))
        return {WordKind::Resolution, WordStrength::Strong};
    if (isChecksum(word) || isNumberedRemark(word))
        return {WordKind::Remark, WordStrength::Strong};
    return table().value(word);
}

WordClass classOfJoinedWords(const QString &joined)
{
    return table().value(joined);
}
