#pragma once
#include <cstdio>

/// Standard output for what was measured, and for that alone: from the first call on, what the measured
/// code prints there goes nowhere.
std::FILE *measuredOutput();
