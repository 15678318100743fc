#pragma once

class QPainter;
class QWidget;

/// Draws the soft shadow and the fine outline of a rounded frame that lies `WindowFrame::ShadowMargin` inside
/// the widget; lighter while another window is active. It is rendered once for each look and stretched, so
/// that painting costs a few blits. Main thread only.
void paintShadow(QPainter &painter, const QWidget &widget);
