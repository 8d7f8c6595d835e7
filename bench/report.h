// What the benchmarks measured: rows of work, picture, library and nanoseconds per pixel; the closing table
// and the file of them.
#pragma once

#include <benchmark/benchmark.h>

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace vrx::bench {

[[nodiscard]] std::string rowName(const std::string& work, const std::string& library);

/// Adds a benchmark, whose counters are named after the pictures. The table has the works in the order of
/// these calls. What counts is the time that passes: the system counts a process's own in ticks of several
/// milliseconds.
template <class Function>
benchmark::internal::Benchmark* add(const std::string& work, const std::string& library, Function function) {
    return benchmark::RegisterBenchmark(rowName(work, library).c_str(), function)->UseRealTime();
}

/// The same for a function that measures its iterations itself, by SetIterationTime.
template <class Function>
benchmark::internal::Benchmark* addTimed(const std::string& work, const std::string& library,
                                         Function function) {
    return benchmark::RegisterBenchmark(rowName(work, library).c_str(), function)->UseManualTime();
}

/// Collects every repetition's counters.
class Report final : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Rows measured elsewhere: work, picture, library and value, separated by tabs.
    void addRows(std::istream& rows);

    [[nodiscard]] bool failed() const { return failed_; }
    void printTable(std::ostream& out) const;
    /// A list of objects: "work", "picture", "library", "ns_per_pixel".
    void writeJson(std::ostream& out) const;

  private:
    struct Row {
        std::string work;
        std::string picture;
        std::string library;
        std::vector<double> values;

        [[nodiscard]] double median() const;
        [[nodiscard]] std::string range() const;
    };
    struct Group {
        const Row* ours = nullptr;
        std::vector<const Row*> others;

        /// The fastest other library's time by ours; 0 where there is none to compare.
        [[nodiscard]] double ratio() const;
    };
    using Groups = std::vector<std::pair<std::string, std::vector<std::pair<std::string, Group>>>>;

    void addValue(const std::string& work, const std::string& picture, const std::string& library,
                  double value);
    [[nodiscard]] std::vector<Row> inOrder() const;
    [[nodiscard]] Groups groups(const std::vector<Row>& rows) const;

    std::vector<Row> rows_;
    bool failed_ = false;
};

}  // namespace vrx::bench
