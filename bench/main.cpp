// vrx_bench [--json FILE] [--only WORK] [--rows FILE] [PICTURE.hdr...] - runs the benchmarks and ends with
// one table. vrx_bench --sample FILE - writes a built-in picture.
#include <benchmark/benchmark.h>

#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks.h"
#include "hdr_pictures.h"
#include "report.h"

namespace vrx::bench {
namespace {

struct Options {
    std::string json;
    std::string only;  ///< a part of the works' names
    std::string rows;  ///< measured elsewhere
    std::string sample;
    std::vector<std::string> pictures;
};

Options optionsOf(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        std::string* value = argument == "--json"     ? &options.json
                             : argument == "--only"   ? &options.only
                             : argument == "--rows"   ? &options.rows
                             : argument == "--sample" ? &options.sample
                                                      : nullptr;
        if (value != nullptr) {
            if (++i == arguments.size()) throw std::runtime_error(argument + " wants a value");
            *value = arguments[i];
        } else if (argument.starts_with("-")) {
            throw std::runtime_error("unknown option: " + argument);
        } else {
            options.pictures.push_back(argument);
        }
    }
    return options;
}

void addBenchmarks() {
    addHdrBenchmarks();
    addHdrPeers();
#ifdef _WIN32
    addCallBenchmarks();
#endif
    addJpegBenchmarks();
    addEffectsBenchmarks();
    addPatternBenchmarks();
}

/// Several repetitions in mixed order, so that what disturbs the machine for a moment spoils none of the
/// works.
void initializeLibrary(std::string filter) {
    std::vector<std::string> words = {"bench", "--benchmark_repetitions=7", "--benchmark_min_time=0.06",
                                      "--benchmark_enable_random_interleaving=true",
                                      "--benchmark_filter=" + (filter.empty() ? "." : filter)};
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
}

int writeSample(const std::string& path) {
    const std::span<const std::uint8_t> bytes = hdrPictures().front().file();
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file ? 0 : 1;
}

int run(const Options& options) {
    if (!options.sample.empty()) return writeSample(options.sample);
    Report report;
    if (!options.rows.empty()) {
        std::ifstream rows(options.rows);
        report.addRows(rows);
    }
    usePictures(options.pictures);
    addBenchmarks();
    initializeLibrary(options.only);
    benchmark::RunSpecifiedBenchmarks(&report);
    report.printTable(std::cout);
    if (options.json.empty()) return report.failed() ? 1 : 0;
    std::ofstream json(options.json);
    report.writeJson(json);
    json.close();
    if (!json) throw std::runtime_error(options.json + ": cannot be written");
    return report.failed() ? 1 : 0;
}

}  // namespace
}  // namespace vrx::bench

int main(int count, char** arguments) {
    try {
        return vrx::bench::run(vrx::bench::optionsOf({arguments + 1, arguments + count}));
    } catch (const std::exception& failure) {
        std::cerr << "bench: " << failure.what() << '\n';
        return 2;
    }
}
