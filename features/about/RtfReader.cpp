#include "RtfReader.h"

#include "RtfTokens.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr double SmallestSize = 4; // points
constexpr double LargestSize = 96;
constexpr double HalfPoint = 0.5;
constexpr int PlainSize = 24; // half points
constexpr char16_t Replacement = 0xfffd;
/// What Windows-1252 has where Latin-1 has control characters, from 0x80 to 0x9f.
constexpr std::array<char16_t, 32> Windows1252 = {
    0x20ac, 0xfffd, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xfffd, 0x017d, 0xfffd, 0xfffd, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0xfffd, 0x017e, 0x0178};

/// What a group holds.
enum class Destination
{
    Body,
    Colors,
    Link, // the instruction of a field: HYPERLINK "address"
    Skipped
};

/// What holds until the end of a group.
struct State
{
    Destination destination = Destination::Body;
    AttributedText::Attributes look = {};
    bool hidden = false;
    int fallbackLength = 1; // characters that stand in for a unicode escape
};

const QHash<QByteArray, QString> &signsByWord()
{
    static const QHash<QByteArray, QString> signs = {
        {"par", u"\n"_s},         {"line", u"\u2028"_s},      {"tab", u"\t"_s},
        {"cell", u"\t"_s},        {"row", u"\n"_s},           {"emdash", u"\u2014"_s},
        {"endash", u"\u2013"_s},  {"bullet", u"\u2022"_s},    {"lquote", u"\u2018"_s},
        {"rquote", u"\u2019"_s},  {"ldblquote", u"\u201c"_s}, {"rdblquote", u"\u201d"_s},
        {"emspace", u"\u2003"_s}, {"enspace", u"\u2002"_s},
    };
    return signs;
}

bool isSkippedDestination(const QByteArray &word)
{
    static const QSet<QByteArray> skipped = {"fonttbl",   "stylesheet", "info",       "pict",     "object",
                                             "header",    "headerl",    "headerr",    "headerf",  "footer",
                                             "footerl",   "footerr",    "footerf",    "footnote", "filetbl",
                                             "listtable", "revtbl",     "nonshppict", "xmlopen",  "private1"};
    return skipped.contains(word);
}

/// The address in a field's instruction, if it is one that a person may follow from here.
QUrl linkIn(const QString &instruction)
{
    const QString text = instruction.trimmed();
    if (!text.startsWith("HYPERLINK"_L1, Qt::CaseInsensitive))
        return {};
    const QUrl url(text.section(u'"', 1, 1), QUrl::StrictMode);
    const bool isKnown =
        url.scheme() == "https"_L1 || url.scheme() == "http"_L1 || url.scheme() == "mailto"_L1;
    return url.isValid() && isKnown ? url : QUrl();
}

class Reader
{
public:
    explicit Reader(const QByteArray &file) : m_tokens(file) {}

    /// Whether the file was whole.
    bool read();
    AttributedText takeText() { return std::move(m_text); }

private:
    bool startGroup();
    bool endGroup();
    void takeWord(const RtfToken &token);
    void takeCharacterWord(const QByteArray &word, const std::optional<int> &parameter);
    void takeColorWord(const QByteArray &word, int value);
    void takeSymbol(char sign);
    void takeByte(char byte);
    void takeUnicode(int value);
    void emitText(const QString &text);
    void flush();
    State &state() { return m_states.last(); }

    RtfTokens m_tokens;
    QList<State> m_states;
    AttributedText m_text;
    QList<std::optional<QColor>> m_colors;
    QColor m_color = Qt::black;
    bool m_colorIsGiven = false;
    QString m_instruction;
    QUrl m_link;
    QString m_pending; // text that looks as the state says
    int m_fallbackLeft = 0;
    bool m_optional = false; // the group started with \*
};

bool Reader::read()
{
    while (true) {
        const RtfToken token = m_tokens.next();
        // What stands in for a unicode escape ends with its group.
        if (token.kind == RtfToken::Kind::GroupStart || token.kind == RtfToken::Kind::GroupEnd)
            m_fallbackLeft = 0;
        switch (token.kind) {
        case RtfToken::Kind::GroupStart:
            if (!startGroup())
                return false;
            break;
        case RtfToken::Kind::GroupEnd:
            if (!endGroup())
                return true; // whatever follows the file's own group is not part of it
            break;
        case RtfToken::Kind::Word:
            takeWord(token);
            break;
        case RtfToken::Kind::Symbol:
            takeSymbol(token.byte);
            break;
        case RtfToken::Kind::Text:
            takeByte(token.byte);
            break;
        case RtfToken::Kind::Binary:
            break;
        case RtfToken::Kind::End:
        case RtfToken::Kind::Damaged:
            return false;
        }
    }
}

bool Reader::startGroup()
{
    flush();
    m_optional = false;
    if (m_states.size() >= MaxRtfDepth)
        return false;
    m_states += m_states.isEmpty() ? State() : State(m_states.last());
    return true;
}

/// Whether the file goes on after the group.
bool Reader::endGroup()
{
    flush();
    m_optional = false;
    const Destination ended = state().destination;
    m_states.removeLast();
    if (m_states.isEmpty())
        return false;
    if (ended == Destination::Link && state().destination != Destination::Link)
        m_link = linkIn(std::exchange(m_instruction, {}));
    return true;
}

void Reader::takeWord(const RtfToken &token)
{
    const QByteArray &word = token.word;
    if (m_fallbackLeft > 0 && word != "u") {
        --m_fallbackLeft;
        return;
    }
    const bool optional = std::exchange(m_optional, false);
    if (state().destination == Destination::Skipped)
        return;
    if (word == "fldinst") {
        m_instruction.clear();
        state().destination = Destination::Link;
    } else if (word == "fldrslt") {
        flush();
        state().look.link = std::exchange(m_link, {});
    } else if (word == "colortbl") {
        state().destination = Destination::Colors;
    } else if (optional || isSkippedDestination(word)) {
        state().destination = Destination::Skipped;
    } else if (word == "u") {
        takeUnicode(token.parameter.value_or(Replacement));
    } else if (word == "uc") {
        state().fallbackLength = std::max(0, token.parameter.value_or(1));
    } else if (state().destination == Destination::Colors) {
        takeColorWord(word, token.parameter.value_or(0));
    } else {
        takeCharacterWord(word, token.parameter);
    }
}

void Reader::takeCharacterWord(const QByteArray &word, const std::optional<int> &parameter)
{
    if (const auto sign = signsByWord().constFind(word); sign != signsByWord().cend())
        return emitText(*sign);
    flush();
    AttributedText::Attributes &look = state().look;
    if (word == "b")
        look.bold = parameter != 0;
    else if (word == "i")
        look.italic = parameter != 0;
    else if (word == "v")
        state().hidden = parameter != 0;
    else if (word == "fs") // half points
        look.size = std::clamp(parameter.value_or(PlainSize) * HalfPoint, SmallestSize, LargestSize);
    else if (word == "cf")
        look.foreground = m_colors.value(parameter.value_or(0));
    else if (word == "plain")
        look = {.link = look.link};
}

void Reader::takeColorWord(const QByteArray &word, int value)
{
    const int part = std::clamp(value, 0, 255);
    if (word == "red")
        m_color.setRed(part);
    else if (word == "green")
        m_color.setGreen(part);
    else if (word == "blue")
        m_color.setBlue(part);
    else
        return;
    m_colorIsGiven = true;
}

void Reader::takeSymbol(char sign)
{
    if (m_fallbackLeft > 0) {
        --m_fallbackLeft;
        return;
    }
    switch (sign) {
    case '*':
        m_optional = true;
        return;
    case '~':
        return emitText(u"\u00a0"_s);
    case '_':
        return emitText(u"\u2011"_s);
    case '\r':
    case '\n':
        return emitText(u"\n"_s);
    case '\\':
    case '{':
    case '}':
        return takeByte(sign);
    default:
        return;
    }
}

void Reader::takeByte(char byte)
{
    if (m_fallbackLeft > 0) {
        --m_fallbackLeft;
        return;
    }
    if (state().destination == Destination::Colors && byte == ';') {
        m_colors += std::exchange(m_colorIsGiven, false) ? std::optional(m_color) : std::nullopt;
        m_color = Qt::black;
        return;
    }
    const auto code = static_cast<unsigned char>(byte);
    const bool differs = code >= 0x80 && code < 0xa0;
    emitText(QString(QChar(differs ? Windows1252[code - 0x80u] : char16_t{code})));
}

void Reader::takeUnicode(int value)
{
    m_fallbackLeft = state().fallbackLength;
    // Values beyond 32767 are written as negative ones, by some as they are.
    const int unit = value < 0 && value >= -0x8000 ? value + 0x10000 : value;
    emitText(QString(QChar(unit >= 0 && unit <= 0xffff ? static_cast<char16_t>(unit) : Replacement)));
}

void Reader::emitText(const QString &text)
{
    if (state().hidden)
        return;
    if (state().destination == Destination::Body)
        m_pending += text;
    else if (state().destination == Destination::Link)
        m_instruction += text;
}

/// Hands on what has gathered, with lone halves of surrogate pairs and control characters made harmless.
void Reader::flush()
{
    if (m_pending.isEmpty())
        return;
    for (qsizetype place = 0; place < m_pending.size(); ++place) {
        const QChar sign = m_pending.at(place);
        const bool isPair = sign.isHighSurrogate() && place + 1 < m_pending.size() &&
                            m_pending.at(place + 1).isLowSurrogate();
        if (isPair)
            ++place;
        else if (sign.isSurrogate() || (sign < u' ' && sign != u'\n' && sign != u'\t'))
            m_pending[place] = Replacement;
    }
    m_text.append(std::exchange(m_pending, {}), state().look);
}

Error failure(const QString &detail)
{
    return {u"RichText"_s, 1, QString(), detail};
}
} // namespace

Result<AttributedText> readRtf(const QByteArray &file)
{
    if (file.size() > MaxRtfBytes)
        return failure(u"too large"_s);
    if (!file.startsWith("{\\rtf"))
        return failure(u"no rich text"_s);
    Reader reader(file);
    if (!reader.read())
        return failure(u"cut off or malformed"_s);
    return reader.takeText();
}

Result<AttributedText> readRtfFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file.errorString());
    return readRtf(file.read(MaxRtfBytes + 1));
}
