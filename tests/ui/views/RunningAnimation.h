#pragma once
#include <QVariantAnimation>

/// The animation that is running below an object, or nothing.
inline QVariantAnimation *runningAnimation(QObject &below)
{
    const auto all = below.findChildren<QVariantAnimation *>();
    for (auto *animation : all) {
        if (animation->state() == QAbstractAnimation::Running)
            return animation;
    }
    return nullptr;
}
