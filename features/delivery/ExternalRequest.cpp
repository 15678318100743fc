#include "ExternalRequest.h"
