#include "RtfReader.h"

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr QChar Replacement = u'\ufffd';
/// What Windows-1252 has from 0x80 to 0x9f, where Latin-1 has control characters.
constexpr QStringView Windows1252 =
    u"\u20ac\ufffd\u201a\u0192\u201e\u2026\u2020\u2021\u02c6\u2030\u0160\u2039\u0152\ufffd\u017d\ufffd"
    u"\ufffd\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u02dc\u2122\u0161\u203a\u0153\ufffd\u017e\u0178";

/// The address in a field's instruction, if a person may follow it from here.
QVariant linkIn(const QString &instruction)
{
    static const QRegularExpression form(u"^\\s*(?i:HYPERLINK)[^\"]*\"((https?|mailto):[^\"]*)\""_s);
    const QUrl url(form.match(instruction).captured(1), QUrl::StrictMode);
    return url.isValid() ? QVariant(url.toString(QUrl::FullyEncoded)) : QVariant();
}

/// What holds until the end of a group.
struct State
{
    QTextCharFormat look = {};
    bool isLink = false, isColorTable = false, isSkipped = false, isHidden = false;
    int fallbackLength = 1; // characters that stand in for a unicode escape
};

class Reader final
{
public:
    /// Whether the file, a byte a character, was whole.
    bool read(const QString &file)
    {
        // A control word with up to nine digits, a symbol, a byte in hexadecimal, a brace, or text.
        static const QRegularExpression token(u"\\\\(?<word>[A-Za-z]{1,32}+(?![A-Za-z])|\r\n|[^A-Za-z'])"
                                              "((?<=[A-Za-z])(?<number>-?\\d{1,9})?\\d* ?)?"
                                              "|\\\\'(?<hex>[0-9A-Fa-f]{2})|(?<bytes>[{}]|[^\\\\{}]+)"_s);
        constexpr auto Options = QRegularExpression::AnchorAtOffsetMatchOption |
                                 QRegularExpression::DontCheckSubjectStringMatchOption;
        for (qsizetype place = 0; m_states.size() <= MaxRtfDepth;) {
            const auto found = token.match(file, place, QRegularExpression::NormalMatch, Options);
            if (!found.hasMatch())
                return false;
            place = found.capturedEnd();
            const QString word = found.captured(1);
            const QString number = found.captured(3);
            const QString hex = found.captured(4);
            const QString text = found.captured(5);
            if (text == u'{' || text == u'}')
                m_fallbackLeft = 0; // what stands in for a unicode escape ends with its group
            if (text == u'{')
                m_states += m_states.isEmpty() ? State() : State(m_states.last());
            else if (text == u'}')
                m_states.removeLast();
            else if (!hex.isEmpty())
                takeByte(QChar(hex.toUShort(nullptr, 16)));
            else if (word == u'u' || (!word.isEmpty() && !isFallback()))
                takeWord(word, number);
            else
                std::ranges::for_each(text, [this](QChar byte) { takeByte(byte); });
            if (m_states.isEmpty())
                return true; // whatever follows the file's own group is not part of it
        }
        return false;
    }

    QList<RtfRun> takeRuns() { return std::move(m_runs); }

private:
    bool isFallback() { return m_fallbackLeft > 0 && m_fallbackLeft-- > 0; }

    void takeWord(const QString &word, const QString &number)
    {
        static const QStringList signs =
            u"par line tab cell row emdash endash bullet lquote rquote ldblquote rdblquote ~ _ \n \r \r\n \\ { }"_s
                .split(u' ');
        static const QRegularExpression skipped(
            u"^(fonttbl|stylesheet|info|pict|object|(head|foot)er[lrf]?|footnote)$"_s);
        constexpr QStringView SignCharacters =
            u"\n\u2028\t\t\n\u2014\u2013\u2022\u2018\u2019\u201c\u201d\u00a0\u2011\n\n\n\\{}";
        State &state = m_states.last();
        const bool isOptional = std::exchange(m_isOptional, word == u'*');
        const int value = number.toInt();
        const bool isOn = number.isEmpty() || value != 0;
        if (state.isSkipped)
            return;
        if (const qsizetype sign = signs.indexOf(word); sign >= 0) {
            takeCharacter(SignCharacters[sign]);
        } else if (word == "fldinst"_L1) {
            m_instruction.clear();
            state.isLink = true;
        } else if (word == "fldrslt"_L1) {
            state.look.setProperty(QTextFormat::AnchorHref, linkIn(std::exchange(m_instruction, {})));
        } else if (word == "colortbl"_L1) {
            state.isColorTable = true;
        } else if (isOptional || skipped.match(word).hasMatch()) {
            state.isSkipped = true;
        } else if (word == u'u') { // values beyond 32767 are written as negative ones, or as they are
            m_fallbackLeft = state.fallbackLength;
            const bool isKnown = !number.isEmpty() && value >= -0x8000 && value <= 0xffff;
            takeCharacter(isKnown ? QChar(static_cast<char16_t>(value)) : Replacement);
        } else if (word == "uc"_L1) {
            state.fallbackLength = number.isEmpty() ? 1 : value;
        } else if (state.isColorTable) { // \red, \green and \blue
            const int part = std::clamp(value, 0, 255);
            m_color.setRgb(word == "red"_L1 ? part : m_color.red(),
                           word == "green"_L1 ? part : m_color.green(),
                           word == "blue"_L1 ? part : m_color.blue());
        } else if (word == "cf"_L1) {
            const QColor color = m_colors.value(value);
            state.look.setProperty(QTextFormat::ForegroundBrush,
                                   color.isValid() ? QBrush(color) : QVariant());
        } else if (word == u'b') {
            state.look.setFontWeight(isOn ? QFont::Bold : QFont::Normal);
        } else if (word == u'i') {
            state.look.setFontItalic(isOn);
        } else if (word == u'v') {
            state.isHidden = isOn;
        } else if (word == "fs"_L1) { // half points
            state.look.setFontPointSize(std::clamp(number.isEmpty() ? 12.0 : value / 2.0, 4.0, 96.0));
        } else if (word == "plain"_L1) {
            for (const auto property : {QTextFormat::FontWeight, QTextFormat::FontItalic,
                                        QTextFormat::FontPointSize, QTextFormat::ForegroundBrush})
                state.look.clearProperty(property);
        }
    }

    void takeByte(QChar byte)
    {
        if (byte == u'\r' || byte == u'\n' || isFallback())
            return;
        if (m_states.last().isColorTable && byte == u';')
            m_colors += std::exchange(m_color, {});
        else
            takeCharacter(byte >= u'\x80' && byte < u'\xa0' ? Windows1252[byte.unicode() - 0x80] : byte);
    }

    void takeCharacter(QChar character)
    {
        const State &state = m_states.last();
        if (state.isLink && !state.isSkipped)
            m_instruction += character;
        if (state.isLink || state.isColorTable || state.isSkipped || state.isHidden)
            return;
        if (m_runs.isEmpty() || m_runs.last().look != state.look)
            m_runs += RtfRun{{}, state.look};
        const bool isText = character >= u' ' || character == u'\n' || character == u'\t';
        m_runs.last().text += isText ? character : Replacement;
    }

    QList<State> m_states; // one for each open group
    QList<RtfRun> m_runs;
    QList<QColor> m_colors;
    QColor m_color; // invalid: the automatic colour
    QString m_instruction;
    int m_fallbackLeft = 0;
    bool m_isOptional = false; // the group started with \*
};
} // namespace

Result<QList<RtfRun>> readRtf(const QByteArray &file)
{
    Reader reader;
    if (file.size() > MaxRtfBytes || !file.startsWith("{\\rtf") || !reader.read(QString::fromLatin1(file)))
        return base::Error{u"RichText"_s, 1, QString(), u"too large, cut off, or no rich text"_s};
    QList<RtfRun> runs = reader.takeRuns();
    for (RtfRun &run : runs) // replaces lone halves of surrogate pairs
        run.text = QString::fromStdU32String(run.text.toStdU32String());
    return runs;
}

Result<QList<RtfRun>> readRtfFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? readRtf(file.read(MaxRtfBytes + 1)) : readRtf({});
}
