#pragma once
#include "Image.h"
#include <QHash>
#include <QList>
#include <QObject>
#include <chrono>
#include <optional>

class QPainter;
class QVariantAnimation;

/// How a layer's contents fill its bounds.
enum class ContentsGravity
{
    Resize,
    ResizeAspect,
    ResizeAspectFill,
    Center
};

enum class TimingFunction
{
    Linear,
    EaseInEaseOut
};

/// A fade from the old contents to the new.
struct Transition
{
    enum class Type
    {
        Fade
    };
    Type type = Type::Fade;
    std::chrono::milliseconds duration{250};
    TimingFunction timingFunction = TimingFunction::EaseInEaseOut;
};

namespace ui
{
/// What a layer-backed view draws: contents with a gravity, clipped to rounded corners. A transition added
/// before the contents change blends the old into the new; with reduced motion the change is at once. Main
/// thread only.
class Layer final : public QObject
{
    Q_OBJECT

public:
    static constexpr auto TransitionKey = "transition";

    std::optional<Image> contents() const { return m_contents; }
    void setContents(const std::optional<Image> &contents);
    ContentsGravity contentsGravity() const { return m_gravity; }
    void setContentsGravity(ContentsGravity gravity);
    qreal cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(qreal points);
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);

    /// Applies to the next change of the contents and to later ones.
    void addAnimation(const Transition &transition, const QString &key);
    std::optional<Transition> animation(const QString &key) const;
    /// The progress of the running fade; 1 when none runs.
    qreal fadeProgress() const;

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

    void beginFade(const Transition &transition);
    void makeFade();
    void endFade();
    void add(QImage &mixture, const Image &image, qreal opacity) const;
    QImage composed(const QSizeF &size, qreal devicePixelRatio) const;

    std::optional<Image> m_contents;
    ContentsGravity m_gravity = ContentsGravity::ResizeAspect;
    qreal m_cornerRadius = 0;
    bool m_masksToBounds = false;
    QHash<QString, Transition> m_animations;
    QVariantAnimation *m_fade = nullptr; // our child, from the first fade on
    qreal m_progress = 1;                // below 1 while a fade runs
    QList<Outgoing> m_outgoing;
};
} // namespace ui
