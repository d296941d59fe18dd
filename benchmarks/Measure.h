#pragma once

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>
#include <vector>

// Measuring beside a yardstick on a machine that does other things as well.
namespace Measure {

double median(std::vector<double> values);

template <typename Work> double secondsOf(Work work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// The best of ours / the best of the yardstick, of a number of rounds after one that is not
// counted. Both give what one execution cost, in the same unit. They take turns and each goes first
// every other round. What else the machine does only ever adds to a cost, and seldom to every
// round's.
template <typename Ours, typename Yardstick>
double bestRatio(int rounds, Ours ours, Yardstick yardstick)
{
    std::pair<double, double> best {std::numeric_limits<double>::infinity(),
                                    std::numeric_limits<double>::infinity()};
    for (int round = 0; round <= rounds; ++round) {
        const bool oursFirst = round % 2 == 0;
        double cost = oursFirst ? ours() : 0;
        const double yardstickCost = yardstick();
        if (!oursFirst)
            cost = ours();
        if (round > 0)
            best = {std::min(best.first, cost), std::min(best.second, yardstickCost)};
    }
    return best.first / best.second;
}

} // namespace Measure
