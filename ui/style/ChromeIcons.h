#pragma once
#include <QIcon>
#include <QStyle>

/// The icons of stock dialogs, drawn flat in the application's current colours; a null icon for signs without
/// a drawing here. Main thread only.
QIcon makeChromeIcon(QStyle::StandardPixmap sign);
