#pragma once
#include <QIcon>
#include <QStyle>

/// The signs that the stock dialogs use, drawn flat in the application's colours of the moment they are
/// drawn; a null icon for what has none here. Main thread only.
QIcon makeChromeIcon(QStyle::StandardPixmap sign);
