#pragma once
#include <net/HttpMessage.h>
#include <net/ServiceError.h>

/// The Error of an unsuccessful answer of the film database. Any thread.
Error filmError(const HttpAnswer &answer);
/// The film has no picture.
Error noPosterError();
