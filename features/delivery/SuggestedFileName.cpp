#include "SuggestedFileName.h"

#include "FileName.h"

using namespace Qt::StringLiterals;

namespace
{
/// A service's language or format without characters that would make the name a path.
QString namePart(const QString &text)
{
    QString part = text.toLower();
    part.removeIf([](QChar character) { return character == u'/' || character == QChar::Null; });
    return part;
}
} // namespace

std::optional<QString> suggestedFileName(const std::optional<QUrl> &video, const Subtitle &subtitle)
{
    if (!video)
        return std::nullopt;
    const QByteArray name = FileName::deletingPathExtension(FileName::lastPathComponent(*video));
    return QString::fromUtf8(name) + u'.' + namePart(subtitle.subLanguageID) + u'.' +
           namePart(subtitle.subFormat);
}
