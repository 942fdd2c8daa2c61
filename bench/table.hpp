#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

/// What the benchmark programs print: one line a figure, each beside the limit that was measured in
/// the same run, with the ratio of the two and the ratio that is aimed at.
namespace bench {

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

inline void printHead(const char* unit) {
  std::printf("%-58s %12s %12s %8s %8s\n", "", unit, "limit", "ratio", "aim");
}

inline void printRatio(const std::string& what, double value, double limit, double aim) {
  std::printf("%-58s %12.2f %12.2f %8.2f %8.2f\n", what.c_str(), value, limit, value / limit, aim);
}

}  // namespace bench
