#include "AppDelegate.h"

#include <languages/catalogue/LanguageCodeToName.h>
#include <platform/Locale.h>
#include <platform/UserDefaults.h>
#include <platform/ValueTransformer.h>

AppDelegate::AppDelegate()
{
    PendingRequest::setShared(this);
    const auto languageCode = Locale::current().languageCode();
    if (!languageCode)
        return;
    UserDefaults::standard().registerDefaults({
        {QStringLiteral("languageCode"), *languageCode},
        {QStringLiteral("SUScheduledCheckInterval"), QStringLiteral("86400")}, // a text, one day in seconds
    });
    ValueTransformer::setValueTransformer(std::make_shared<LanguageCodeToName>(),
                                          QStringLiteral("LanguageCodeToName"));
}

AppDelegate::~AppDelegate()
{
    PendingRequest::setShared(nullptr);
}
