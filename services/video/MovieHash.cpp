#include "MovieHash.h"
