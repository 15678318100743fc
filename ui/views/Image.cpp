#include "Image.h"
#include "ImageSource.h"

#include <base/Bundle.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>

using namespace Qt::StringLiterals;

namespace
{
/// The pictures of one bundle that were asked for by name.
struct NamedImages
{
    QString folder;
    QHash<QString, ui::Image> byName;
};

NamedImages &namedImages()
{
    static NamedImages images;
    // Pixmaps must be destroyed before the application object.
    static const bool cleansUp = [] {
        qAddPostRoutine([] { images.byName.clear(); });
        return true;
    }();
    Q_UNUSED(cleansUp)
    return images;
}

/// Format names come from servers, so only a plain file name may name an icon.
bool isPlainName(const QString &name)
{
    return !name.isEmpty() && !name.startsWith(u'.') && !name.contains(u'/') && !name.contains(u'\\') &&
           !name.contains(QChar(u'\0'));
}
} // namespace

ui::Image::Image(const QImage &pixels) : ui::Image(std::make_shared<Source>(pixels)) {}

ui::Image::Image(std::shared_ptr<Source> source)
    : m_source(std::move(source)), m_size(m_source->naturalSize())
{
}

std::optional<ui::Image> ui::Image::fromFile(const QString &path)
{
    auto source = Source::read(path);
    if (!source)
        return std::nullopt;
    return ui::Image(std::move(source));
}

std::optional<ui::Image> ui::Image::named(const QString &name)
{
    if (!isPlainName(name))
        return std::nullopt;
    NamedImages &images = namedImages();
    const QString folder = Bundle::main().folder();
    if (images.folder != folder)
        images = {folder, {}};
    if (const auto known = images.byName.constFind(name); known != images.byName.constEnd())
        return *known;
    for (const auto *suffix : {".svg", ".png"}) {
        const QString path = folder + "/icons/"_L1 + name + QLatin1String(suffix);
        if (!QFileInfo::exists(path))
            continue;
        if (auto image = fromFile(path)) {
            images.byName.insert(name, *image);
            return image;
        }
    }
    return std::nullopt;
}

QSizeF ui::Image::size() const
{
    return m_size;
}

void ui::Image::setSize(const QSizeF &size)
{
    m_size = size;
}

QPixmap ui::Image::pixmap(const QSizeF &size, qreal devicePixelRatio) const
{
    return m_source->pixmap(size, devicePixelRatio);
}

bool ui::Image::operator==(const ui::Image &other) const
{
    return m_source == other.m_source && m_size == other.m_size;
}
