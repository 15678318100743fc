// A library that makes a precompiled header needs a source.
