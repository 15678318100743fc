#pragma once
#include <memory>

/// Makes the program's services and installs them as the shared ones. This is the only place that chooses
/// implementations. They exist until the result is released, which must happen before the application object
/// is destroyed; it logs out and takes a few seconds at most.
std::shared_ptr<void> installServices();
