#pragma once
#include <memory>

// The only place that chooses the implementations of services.

/// Makes the program's services and installs them as the shared ones. They exist until the result is
/// released, which must happen before the application object is destroyed; it logs out and takes a few
/// seconds at most.
std::shared_ptr<void> installServices();

/// Makes the updater and the feedback reporter with their windows and installs them as the shared ones until
/// the program ends. Needs the application object, the scenes and the main bundle.
void installMakerServices();
