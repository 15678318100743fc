#pragma once
#include <cstdio>

/// Standard output for what was measured, and for that alone: from the first call on, whatever the measured
/// code prints goes to standard error.
std::FILE *measuredOutput();
