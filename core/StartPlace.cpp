#include "core/StartPlace.h"

namespace {

Text withBackslash(TextView path) {
    Text whole = lowered(path);
    while (!whole.empty() && whole.back() == u'\\')
        whole.pop_back();
    return whole + u'\\';
}

/// "c:\", also after the prefix of a final path.
bool isDrive(TextView path) {
    constexpr TextView kPrefix = u"\\\\?\\";
    if (path.starts_with(kPrefix)) path.remove_prefix(kPrefix.size());
    return path.find(u'\\') + 1 == path.size();
}

}  // namespace

bool liesInTemporary(TextView folder, TextView temporary, TextView profile) {
    if (temporary.empty()) return false;
    const Text below = withBackslash(temporary);
    if (isDrive(below) || (!profile.empty() && withBackslash(profile).starts_with(below))) return false;
    return withBackslash(folder).starts_with(below);
}

Text startedFromZipPrompt() {
    return u"Kardel was started in a folder for temporary files, as from inside a zip.\r"
           u"Notes that are made there would be lost.\r"
           u"\r"
           u"Extract the zip into a folder of your own first, and start Kardel from there.";
}
