#pragma once

/// Makes the updater and the feedback reporter with their windows and installs them as the shared ones until
/// the program ends. Needs the application object, the scenes and the main bundle.
void installMakerServices();
