#pragma once
#include <QImage>
#include <QPixmap>
#include <QSizeF>
#include <memory>
#include <optional>

/// A picture that is drawn at a size in points: pixels, or SVG that is crisp at every scale. Shared by value;
/// drawing is cached by size and scale. Main thread only.
class Image final
{
public:
    explicit Image(const QImage &pixels);
    /// Reads an SVG or bitmap file; nothing when it is no picture.
    static std::optional<Image> fromFile(const QString &path);
    /// The picture "icons/NAME.svg" (or ".png") of the main bundle, or nothing. The same picture is read
    /// once.
    static std::optional<Image> named(const QString &name);

    /// The size it is drawn at, in points; its own size unless set.
    QSizeF size() const;
    void setSize(const QSizeF &size);
    /// The picture at `size` points for a device pixel ratio. Never more than 4096 pixels wide or high,
    /// whatever is asked; draw it into the rectangle that was meant.
    QPixmap pixmap(const QSizeF &size, qreal devicePixelRatio) const;
    bool operator==(const Image &other) const;

private:
    class Source;
    explicit Image(std::shared_ptr<Source> source);

    std::shared_ptr<Source> m_source;
    QSizeF m_size;
};
