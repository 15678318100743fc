#include "LocaleSource.h"

#include <base/Locale.h>

namespace
{
class SystemLocaleNames final : public LocaleNames
{
public:
    std::optional<QString> nameOfLanguage(const QString &code) const override
    {
        return m_locale.localizedStringForLanguageCode(code);
    }
    std::optional<QString> nameOfRegion(const QString &code) const override
    {
        return m_locale.localizedStringForRegionCode(code);
    }
    std::weak_ordering compare(const QString &a, const QString &b) const override
    {
        return m_locale.compare(a, b);
    }

private:
    Locale m_locale = Locale::current();
};

class SystemLocaleSource final : public LocaleSource
{
public:
    std::unique_ptr<const LocaleNames> currentLocale() const override
    {
        return std::make_unique<SystemLocaleNames>();
    }
    QStringList isoLanguageCodes() const override { return Locale::isoLanguageCodes(); }
    QStringList isoRegionCodes() const override { return Locale::isoRegionCodes(); }
};
} // namespace

const LocaleSource &LocaleSource::system()
{
    static const SystemLocaleSource source;
    return source;
}
