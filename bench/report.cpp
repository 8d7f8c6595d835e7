#include "report.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string_view>

namespace vrx::bench {
namespace {

constexpr char kOurs[] = "vrx";
constexpr char kBetween[] = " by ";
// What shows how far there is to go, and is no library for the same work.
constexpr std::array<std::string_view, 3> kYardsticks = {"LZ4", "memcpy", "engine alone"};

std::vector<std::string>& namesInOrder() {
    static std::vector<std::string> names;
    return names;
}

bool isYardstick(const std::string& library) {
    return std::find(kYardsticks.begin(), kYardsticks.end(), library) != kYardsticks.end();
}

/// Three digits are what a measurement is good for.
std::string digits(double value) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(value < 1 ? 3 : value < 10 ? 2 : value < 1000 ? 1 : 0) << value;
    return text.str();
}

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return result + '"';
}

template <class Entries>
auto& entryOf(Entries& entries, const std::string& name) {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.first == name; });
    return found != entries.end()
               ? found->second
               : entries.emplace_back(name, typename Entries::value_type::second_type{}).second;
}

void printLine(std::ostream& out, const std::string& work, const std::string& picture,
               const std::string& ours, const std::string& range, double ratio, const std::string& others) {
    out << std::left << std::setw(26) << work << std::setw(28) << picture << std::right << std::setw(8)
        << ours << std::setw(15) << range << std::setw(8) << (ratio > 0 ? digits(ratio) : "-") << "   "
        << others << '\n';
}

}  // namespace

std::string rowName(const std::string& work, const std::string& library) {
    namesInOrder().push_back(work + kBetween + library);
    return namesInOrder().back();
}

double Report::Row::median() const { return medianOf(values); }

std::string Report::Row::range() const {
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    return digits(*low) + "-" + digits(*high);
}

double Report::Group::ratio() const {
    double fastest = 0;
    for (const Row* row : others) {
        if (!isYardstick(row->library) && (fastest == 0 || row->median() < fastest)) fastest = row->median();
    }
    return ours != nullptr ? fastest / ours->median() : 0;
}

void Report::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.error_occurred) {
            std::cerr << run.benchmark_name() << ": " << run.error_message << '\n';
            failed_ = true;
        }
        if (run.run_type != Run::RT_Iteration) continue;
        const std::string& name = run.run_name.function_name;
        const std::size_t between = name.rfind(kBetween);
        const std::string library = name.substr(between + sizeof kBetween - 1);
        for (const auto& [picture, value] : run.counters)
            addValue(name.substr(0, between), picture, library, value);
    }
}

void Report::addRows(std::istream& rows) {
    std::string work, picture, library, value;
    while (std::getline(rows, work, '\t') && std::getline(rows, picture, '\t') &&
           std::getline(rows, library, '\t') && std::getline(rows, value)) {
        addValue(work, picture, library, std::stod(value));
    }
}

void Report::addValue(const std::string& work, const std::string& picture, const std::string& library,
                      double value) {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) {
        return row.work == work && row.picture == picture && row.library == library;
    });
    if (found != rows_.end()) return found->values.push_back(value);
    rows_.push_back({work, picture, library, {value}});
}

/// The rows as their benchmarks were added; what was measured elsewhere comes last.
std::vector<Report::Row> Report::inOrder() const {
    const std::vector<std::string>& names = namesInOrder();
    const auto placeOf = [&](const Row& row) {
        return std::find(names.begin(), names.end(), row.work + kBetween + row.library) - names.begin();
    };
    std::vector<Row> rows = rows_;
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const Row& a, const Row& b) { return placeOf(a) < placeOf(b); });
    return rows;
}

Report::Groups Report::groups(const std::vector<Row>& rows) const {
    Groups groups;
    for (const Row& row : rows) {
        Group& group = entryOf(entryOf(groups, row.work), row.picture);
        if (row.library == kOurs) {
            group.ours = &row;
        } else {
            group.others.push_back(&row);
        }
    }
    return groups;
}

void Report::printTable(std::ostream& out) const {
    out << "\nNanoseconds per pixel: medians of the repetitions and, of ours, the least and the most. The "
           "ratio is the\n"
           "fastest other library's time by ours; behind each other one its own. LZ4, memcpy and the engine "
           "alone\n"
           "are yardsticks.\n\n";
    printLine(out, "work", "picture", "vrx", "range", 0, "others (times ours)");
    const std::vector<Row> rows = inOrder();
    for (const auto& [work, pictures] : groups(rows)) {
        std::vector<double> times, ratios;
        for (const auto& [picture, group] : pictures) {
            std::string others;
            for (const Row* row : group.others) {
                others += row->library + ' ' + digits(row->median());
                if (group.ours != nullptr)
                    others += " (" + digits(row->median() / group.ours->median()) + ")";
                others += "  ";
            }
            const bool ours = group.ours != nullptr;
            printLine(out, work, picture, ours ? digits(group.ours->median()) : "-",
                      ours ? group.ours->range() : "", group.ratio(), others);
            if (ours) times.push_back(group.ours->median());
            if (group.ratio() > 0) ratios.push_back(group.ratio());
        }
        if (times.size() < 2) continue;
        printLine(out, work, "median", digits(medianOf(times)), "", ratios.empty() ? 0 : medianOf(ratios),
                  "");
    }
}

void Report::writeJson(std::ostream& out) const {
    out << "[";
    const char* separator = "\n";
    for (const Row& row : inOrder()) {
        out << separator << "  {\"work\": " << quoted(row.work) << ", \"picture\": " << quoted(row.picture)
            << ", \"library\": " << quoted(row.library) << ", \"ns_per_pixel\": " << std::setprecision(6)
            << row.median() << "}";
        separator = ",\n";
    }
    out << "\n]\n";
}

}  // namespace vrx::bench
