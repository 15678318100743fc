#include "Services.h"
