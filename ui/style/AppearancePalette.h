#pragma once
#include "Appearance.h"
#include <QPalette>

/// The program's palette for a scheme and an accent colour.
QPalette appearancePalette(Appearance::Scheme scheme, const QColor &accent);
