#pragma once
#include "Layer.h"

#include <QEasingCurve>
#include <QPointF>

/// The usual acceleration at both ends: a cubic curve with the control points (0.42, 0) and (0.58, 1).
inline QEasingCurve easeInEaseOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
    return curve;
}

inline QEasingCurve easingCurve(TimingFunction function)
{
    return function == TimingFunction::Linear ? QEasingCurve(QEasingCurve::Linear) : easeInEaseOut();
}
