#include "LegacyText.h"

#include <QStringDecoder>

#include <cerrno>
#include <iconv.h>

namespace
{
/// The iconv converter from a set to UTF-8.
class Converter final
{
public:
    explicit Converter(const QByteArray &set) : m_converter(iconv_open("UTF-8", set.constData())) {}
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;
    ~Converter()
    {
        if (isValid())
            iconv_close(m_converter);
    }

    bool isValid() const
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the sign that iconv itself gives for none
        return m_converter != reinterpret_cast<iconv_t>(-1);
    }

    /// Continues after every invalid byte.
    LegacyText read(QByteArray bytes)
    {
        LegacyText result;
        QByteArray utf8;
        char *from = bytes.data();
        auto left = static_cast<std::size_t>(bytes.size());
        while (left > 0) {
            const bool stopped = !convert(from, left, utf8) && errno != E2BIG;
            if (!stopped || left == 0)
                continue;
            result.hasErrors = true;
            utf8 += "\xEF\xBF\xBD"; // U+FFFD
            ++from;
            --left;
        }
        result.text = QString::fromUtf8(utf8);
        return result;
    }

private:
    bool convert(char *&from, std::size_t &left, QByteArray &utf8)
    {
        char *to = m_block.data();
        auto room = static_cast<std::size_t>(m_block.size());
        const bool done = iconv(m_converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
        const int reason = errno;
        utf8.append(m_block.constData(), m_block.size() - static_cast<qsizetype>(room));
        errno = reason;
        return done;
    }

    static constexpr qsizetype BlockBytes = 64LL * 1024;

    QByteArray m_block{BlockBytes, Qt::Uninitialized};
    iconv_t m_converter;
};
} // namespace

std::optional<LegacyText> LegacyText::read(const QByteArray &bytes, const QByteArray &set)
{
    if (QStringDecoder decode(set.constData()); decode.isValid()) {
        QString text = decode(bytes);
        return LegacyText{std::move(text), decode.hasError()};
    }
    Converter converter(set);
    if (!converter.isValid())
        return std::nullopt;
    return converter.read(bytes);
}
