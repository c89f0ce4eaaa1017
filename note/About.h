// What the About box says and where its links lead, in one place. The owner of a build sets the texts with
// -DKARDEL_MAIL="\"...\"" and the like; an empty address hides its link.
#pragma once

#include "resources/version.h"
#include "support/Text.h"

#ifndef KARDEL_MAIL
#define KARDEL_MAIL "support@kardel.example"
#endif
#ifndef KARDEL_SITE
#define KARDEL_SITE "https://kardel.example/"
#endif
#ifndef KARDEL_COPYRIGHT
#define KARDEL_COPYRIGHT "Kardel contributors"  // holder, with the years if wished
#endif

namespace about {

inline constexpr TextView kTitle = u"About";
inline constexpr TextView kMail = u"" KARDEL_MAIL;
inline constexpr TextView kSite = u"" KARDEL_SITE;
inline constexpr TextView kText = u"Kardel - version " KARDEL_VERSION_TEXT
                                  u"\r\r"
                                  u"Copyright \u00a9 " KARDEL_COPYRIGHT
                                  u"\r"
                                  u"Sticky notes for the Windows desktop.";

}  // namespace about
