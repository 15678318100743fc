#pragma once
#include <QStringView>
#include <optional>

/// Reads one word from left to right: "s01e02" is letters, a number, letters, a number.
class WordReader final
{
public:
    explicit WordReader(QStringView word) : m_rest(word) {}

    bool atEnd() const { return m_rest.isEmpty(); }

    /// Consumes `text` if the word continues with it.
    bool take(QLatin1StringView text)
    {
        if (!m_rest.startsWith(text))
            return false;
        m_rest = m_rest.mid(text.size());
        return true;
    }

    /// Consumes the following digits if their number is within the limits.
    std::optional<int> number(qsizetype minDigits, qsizetype maxDigits)
    {
        qsizetype digits = 0;
        while (digits < m_rest.size() && m_rest[digits] >= u'0' && m_rest[digits] <= u'9')
            ++digits;
        if (digits < minDigits || digits > maxDigits)
            return std::nullopt;
        const int value = m_rest.left(digits).toInt();
        m_rest = m_rest.mid(digits);
        return value;
    }

private:
    QStringView m_rest;
};
