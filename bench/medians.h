// Shared by the benchmarks: many short repetitions in random order, so that all run under the same conditions, and the
// ratios of medians, which are the results.
#ifndef LXBRIDGE_BENCH_MEDIANS_H_
#define LXBRIDGE_BENCH_MEDIANS_H_

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace lxbench {

// The command line with the repetitions first, so that options given on it take precedence.
inline std::vector<char*> WithRepetitions(int argc, char** argv) {
  static char repetitions[] = "--benchmark_repetitions=21";
  static char interleaving[] = "--benchmark_enable_random_interleaving=true";
  static char aggregates[] = "--benchmark_report_aggregates_only=true";
  static char time[] = "--benchmark_min_time=0.1";
  std::vector<char*> arguments(argv, argv + argc);
  arguments.insert(arguments.begin() + 1, {repetitions, interleaving, aggregates, time});
  return arguments;
}

// The console's table; keeps the medians for the ratios.
class MedianReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
        medians_[run.run_name.function_name] = run.GetAdjustedRealTime();
      }
    }
  }

  // 0: not measured.
  [[nodiscard]] double Median(const std::string& name) const {
    const auto found = medians_.find(name);
    return found == medians_.end() ? 0 : found->second;
  }

  // `perIteration`: the number of operations in an iteration.
  void PrintRatio(const std::string& name, const std::string& base, const char* unit, double perIteration) const {
    const auto measured = medians_.find(name), against = medians_.find(base);
    if (measured == medians_.end() || against == medians_.end() || against->second <= 0) return;
    std::printf("medians: %s %.2f %s, %s %.2f %s, ratio %.2f\n", name.c_str(), measured->second / perIteration, unit,
                base.c_str(), against->second / perIteration, unit, measured->second / against->second);
  }

 private:
  std::map<std::string, double> medians_;
};

}  // namespace lxbench

#endif  // LXBRIDGE_BENCH_MEDIANS_H_
