#pragma once
#include <QImage>
#include <QPixmap>
#include <memory>
#include <optional>

/// How a picture fills a rectangle.
enum class ContentsGravity
{
    Resize,
    ResizeAspect,
    ResizeAspectFill,
    Center
};

namespace ui
{
/// A picture that is drawn at a size in points: pixels, or SVG, which is sharp at every scale. Copies share
/// their content; drawings are cached by size and scale. Main thread only.
class Image final
{
public:
    explicit Image(const QImage &pixels);
    /// Reads an SVG or bitmap file; none when it is not a picture.
    static std::optional<Image> fromFile(const QString &path);
    /// The picture "icons/NAME.svg" (or ".png") of the main bundle, or none. Each picture is read once.
    static std::optional<Image> named(const QString &name);

    /// The size in points at which it is drawn; its natural size unless set.
    QSizeF size() const { return m_size; }
    void setSize(const QSizeF &size) { m_size = size; }
    /// The picture at `size` points for a device pixel ratio, at most 4096 pixels wide or high. Draw it into
    /// the intended rectangle, which may be larger.
    QPixmap pixmap(const QSizeF &size, qreal devicePixelRatio) const;
    /// Draws the picture by gravity, without leaving `bounds`.
    void draw(QPainter &painter, const QRectF &bounds, ContentsGravity gravity) const;
    bool operator==(const Image &other) const = default;

private:
    class Source;
    explicit Image(std::shared_ptr<Source> source);

    std::shared_ptr<Source> m_source;
    QSizeF m_size;
};
} // namespace ui
