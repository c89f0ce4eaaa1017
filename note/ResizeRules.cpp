#include "note/ResizeRules.h"

#include <algorithm>

Twips resized(const ResizeAxis& axis, Twips delta) {
    const Twips wanted = axis.size + delta;
    if (delta.n < 0) return wanted < axis.least ? axis.size : wanted;
    return std::max(axis.size, std::min(wanted, axis.workEnd - axis.start));
}
