#include "Preparation.h"

#include <base/Locale.h>

#ifdef PLOVENDIX_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

namespace
{
using namespace Qt::StringLiterals;

void readFonts()
{
#ifdef PLOVENDIX_FONTCONFIG
    FcInit();
#endif
}

/// Fills the cache of language names and loads the collation data.
void readLanguageNames()
{
    const Locale locale = Locale::current();
    for (const QString &code : Locale::isoLanguageCodes())
        static_cast<void>(locale.localizedStringForLanguageCode(code));
    static_cast<void>(locale.compare(u"a"_s, u"b"_s));
}
} // namespace

Preparation::Preparation()
    : m_thread([] {
          readFonts();
          readLanguageNames();
      })
{
}

Preparation::~Preparation()
{
    finish();
}

void Preparation::finish()
{
    if (m_thread.joinable())
        m_thread.join();
}
