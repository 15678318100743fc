#pragma once

/// Makes the program's services and installs them as the shared ones: the one place that chooses
/// implementations.
void installServices();
