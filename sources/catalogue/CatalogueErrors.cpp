#include "CatalogueErrors.h"

#include <base/LocalizedString.h>
#include <base/TerminalText.h>

using namespace Qt::StringLiterals;

CatalogueErrors::CatalogueErrors()
{
    m_missing = String::localize(u"The subtitle catalogue “%@” is missing. Install Plovendix again."_s);
    m_damaged = String::localize(u"The subtitle catalogue “%@” is damaged. Replace the file or remove it."_s);
    m_otherVersion =
        String::localize(u"The subtitle catalogue “%@” was made by another version of Plovendix."_s);
    m_unreadable = String::localize(u"The subtitle catalogue “%@” cannot be read."_s);
    m_noLongerThere = String::localize(u"This subtitle is no longer in the catalogue. Search again."_s);
    m_noPicture = String::localize(u"The catalogue has no picture of this film."_s);
    m_diskFull = String::localize(u"The disk is full: the subtitle catalogue “%@” cannot grow."_s);
    m_busy = String::localize(
        u"Another import is writing to the subtitle catalogue “%@”. Try again when it has ended."_s);
    m_unwritable = String::localize(u"The subtitle catalogue “%@” cannot be written."_s);
    m_tooSlow = String::localize(
        u"Reading the subtitle catalogue “%@” took too long. Try again, or replace the file."_s);
}

base::Error CatalogueErrors::error(CatalogueFailure failure, const QString &path, const QString &detail) const
{
    const auto sentence = [&]() -> QString {
        switch (failure) {
        case CatalogueFailure::Missing:
            return m_missing;
        case CatalogueFailure::Damaged:
            return m_damaged;
        case CatalogueFailure::OtherVersion:
            return m_otherVersion;
        case CatalogueFailure::Unreadable:
            return m_unreadable;
        case CatalogueFailure::NoLongerThere:
            return m_noLongerThere;
        case CatalogueFailure::NoPicture:
            return m_noPicture;
        case CatalogueFailure::DiskFull:
            return m_diskFull;
        case CatalogueFailure::Busy:
            return m_busy;
        case CatalogueFailure::Unwritable:
            return m_unwritable;
        case CatalogueFailure::TooSlow:
            return m_tooSlow;
        }
        return {};
    };
    return base::Error{u"Catalogue"_s, static_cast<int>(failure), String::fill(sentence(), {path}),
                       terminalText(detail)};
}
