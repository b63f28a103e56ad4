#pragma once

#include <algorithm>
#include <vector>

namespace pomvar::bench {

// The middle figure of a run; -1 when nothing was measured.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? -1 : values[values.size() / 2];
}

} // namespace pomvar::bench
