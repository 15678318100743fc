#include "ApplicationURLs.h"

bool ApplicationURLs::canOpenURL(const QUrl &)
{
    return false;
}

bool ApplicationURLs::openURL(const QUrl &)
{
    return false;
}
