#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <optional>

/// One piece of a rich-text file. `Text` is one byte of text, whether plain or as \'hh; `Symbol` is a control
/// symbol such as \~ with its sign in `byte`.
struct RtfToken
{
    enum class Kind
    {
        GroupStart,
        GroupEnd,
        Word,
        Symbol,
        Text,
        Binary, // \binN with its N bytes, which are passed over
        End,
        Damaged // cut off or malformed: nothing follows
    };
    Kind kind = Kind::End;
    QByteArray word = {};
    std::optional<int> parameter = {};
    char byte = 0;
};

/// Cuts a rich-text file into its pieces. Reads nothing beyond its end, whatever the file says about itself.
/// A plain value; any thread.
class RtfTokens final
{
public:
    /// The bytes must outlive the tokens.
    explicit RtfTokens(QByteArrayView bytes) : m_bytes(bytes) {}

    RtfToken next();

private:
    bool atEnd() const { return m_place >= m_bytes.size(); }
    RtfToken control();
    RtfToken controlWord();
    RtfToken hexByte();
    RtfToken binary(const std::optional<int> &length);
    std::optional<int> number();

    QByteArrayView m_bytes;
    qsizetype m_place = 0;
};
