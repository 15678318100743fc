#pragma once
#include <QByteArray>

/// Renders an SVG drawing as an encoded picture at three times its displayed size; empty when it is invalid.
/// Drawings contain no text, so that fonts of the building machine do not matter.
QByteArray drawnPoster(const QByteArray &svg);
