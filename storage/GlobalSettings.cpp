#include "storage/GlobalSettings.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/Number.h"

std::int32_t wholeTwips(float size) {
    constexpr double kLimit = std::numeric_limits<std::int32_t>::max();
    const double rounded = std::nearbyint(static_cast<double>(size));
    return static_cast<std::int32_t>(std::clamp(rounded, -kLimit, kLimit));
}

std::vector<KeyText> settingValues(const GlobalSettings& settings, int count, bool useRegistry) {
    return {{Text(kCountKey), decimal(count)},
            {u"defaultwidth", decimal(wholeTwips(settings.DefaultWidth))},
            {u"defaultheight", decimal(wholeTwips(settings.DefaultHeight))},
            {u"AlignAll", boolText(settings.AlignAll)},
            {u"EasyAlign", boolText(settings.EasyAlign)},
            {u"RestoreWhenPlay", boolText(settings.RestoreWhenPlay)},
            {u"DontDeleteWhenPlay", boolText(settings.DontDeleteWhenPlay)},
            {u"UseRegistry", boolText(useRegistry)}};
}

int storedCount(const Settings& settings) {
    return leadingInt32(settingOr(settings, kSettingSection, kCountKey, u""));
}

float defaultSize(TextView stored, float builtIn) {
    constexpr double kLimit = std::numeric_limits<float>::max();
    const auto size = static_cast<float>(std::clamp(leadingNumber(stored), -kLimit, kLimit));
    return size == 0 ? builtIn : size;
}
