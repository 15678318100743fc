#pragma once
#include <memory>

/// Makes the program's services and installs them as the shared ones: the one place that chooses
/// implementations. They stay until what this gives is let go, which must be before the application object
/// goes; that logs out, and takes a few seconds at the most.
std::shared_ptr<void> installServices();
