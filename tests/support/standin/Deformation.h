#pragma once
#include "Behaviours.h"
#include "Exchange.h"

/// What the selected behaviours make of a right answer: packed, cut, delayed, of the wrong kind.
ServedAnswer deformed(ServedAnswer answer, const ReceivedRequest &request, Behaviours &behaviours,
                      QLatin1StringView endpoint);

/// A page of hypertext, as captive portals and gateways send it.
ServedAnswer pageAnswer(int status, const QByteArray &title);
ServedAnswer jsonAnswer(int status, const QByteArray &json);
