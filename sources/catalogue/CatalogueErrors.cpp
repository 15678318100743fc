#include "CatalogueErrors.h"

#include <base/LocalizedString.h>
#include <base/TerminalText.h>

using namespace Qt::StringLiterals;
using enum CatalogueFailure;

CatalogueErrors::CatalogueErrors()
    : m_sentences{
          {Missing, String::localize(u"The subtitle catalogue “%@” is missing. Install Plovendix again."_s)},
          {Damaged,
           String::localize(u"The subtitle catalogue “%@” is damaged. Replace the file or remove it."_s)},
          {OtherVersion,
           String::localize(u"The subtitle catalogue “%@” was made by another version of Plovendix."_s)},
          {Unreadable, String::localize(u"The subtitle catalogue “%@” cannot be read."_s)},
          {NoLongerThere, String::localize(u"This subtitle is no longer in the catalogue. Search again."_s)},
          {NoPicture, String::localize(u"The catalogue has no picture of this film."_s)},
          {DiskFull, String::localize(u"The disk is full: the subtitle catalogue “%@” cannot grow."_s)},
          {Busy,
           String::localize(
               u"Another import is writing to the subtitle catalogue “%@”. Try again when it has ended."_s)},
          {Unwritable, String::localize(u"The subtitle catalogue “%@” cannot be written."_s)},
          {TooSlow,
           String::localize(
               u"Reading the subtitle catalogue “%@” took too long. Try again, or replace the file."_s)},
      }
{
}

base::Error CatalogueErrors::error(CatalogueFailure failure, const QString &path, const QString &detail) const
{
    return base::Error{u"Catalogue"_s, static_cast<int>(failure), String::fill(m_sentences[failure], {path}),
                       terminalText(detail)};
}
