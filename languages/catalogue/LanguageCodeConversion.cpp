#include "LanguageCodeConversion.h"
