#pragma once
#include <net/HttpMessage.h>
#include <net/ServiceError.h>

/// The Error of a film database's answer that is no success. Any thread.
Error filmError(const HttpAnswer &answer);
/// There is a film, but no picture of it.
Error noPosterError();
