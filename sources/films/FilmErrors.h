#pragma once
#include <net/HttpMessage.h>
#include <net/ServiceError.h>

/// The Error of an unsuccessful answer of the film database. Any thread.
base::Error filmError(const HttpAnswer &answer);
/// The film has no picture.
base::Error noPosterError();
