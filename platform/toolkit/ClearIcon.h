#pragma once
#include <QIcon>

/// The sign that empties a field: a filled disc with a cross, in the application's colours of the moment it
/// is drawn.
QIcon makeClearIcon();
