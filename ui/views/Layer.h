#pragma once
#include "Image.h"
#include <QList>
#include <QVariantAnimation>
#include <chrono>

class QPainter;

namespace ui
{
/// What a layer-backed view draws: contents with a gravity, clipped to rounded corners. With a transition the
/// old contents blend into the new; with reduced motion the change is at once. Main thread only.
class Layer final : public QObject
{
    Q_OBJECT

public:
    Layer();

    std::optional<Image> contents() const { return m_contents; }
    void setContents(const std::optional<Image> &contents);
    ContentsGravity contentsGravity() const { return m_gravity; }
    void setContentsGravity(ContentsGravity gravity);
    qreal cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(qreal points);
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);

    /// How long each later change of the contents takes; at first no time.
    std::chrono::milliseconds transition() const { return m_transition; }
    void setTransition(std::chrono::milliseconds duration) { m_transition = duration; }
    /// The progress of the running fade; 1 when none runs.
    qreal fadeProgress() const { return m_progress; }

    void draw(QPainter &painter, const QRectF &bounds) const;

Q_SIGNALS:
    void needsDisplay();

private:
    /// The contents that fade out, and their share when the fade began.
    struct Outgoing
    {
        Image image;
        qreal opacity = 1;
    };

    void beginFade();
    void endFade();
    void add(QImage &mixture, const Image &image, qreal opacity) const;
    QImage composed(const QSizeF &size, qreal devicePixelRatio) const;

    std::optional<Image> m_contents;
    ContentsGravity m_gravity = ContentsGravity::ResizeAspect;
    qreal m_cornerRadius = 0;
    bool m_masksToBounds = false;
    std::chrono::milliseconds m_transition{};
    QVariantAnimation m_fade{this};
    qreal m_progress = 1; // below 1 while a fade runs
    QList<Outgoing> m_outgoing;
};
} // namespace ui
