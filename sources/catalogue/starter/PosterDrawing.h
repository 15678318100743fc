#pragma once
#include <QByteArray>

/// An SVG drawing as an encoded picture, sharp at three times the size it is shown in; empty when it is no
/// drawing. Drawings hold no text, so that no font of the building machine matters.
QByteArray drawnPoster(const QByteArray &svg);
