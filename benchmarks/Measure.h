#pragma once

#include <chrono>
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

// The median of ours / yardstick over a number of rounds, after one round that is not counted. Both
// give what one execution cost, in the same unit. They take turns, so that what else the machine
// does meanwhile falls on both alike, and each goes first every other round.
template <typename Ours, typename Yardstick>
double medianRatio(int rounds, Ours ours, Yardstick yardstick)
{
    std::vector<double> ratios;
    for (int round = 0; round <= rounds; ++round) {
        const bool oursFirst = round % 2 == 0;
        double cost = oursFirst ? ours() : 0;
        const double yardstickCost = yardstick();
        if (!oursFirst)
            cost = ours();
        if (round > 0)
            ratios.push_back(cost / yardstickCost);
    }
    return median(ratios);
}

} // namespace Measure
