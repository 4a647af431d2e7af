#include "Report.h"

#include <cstdio>
#include <fstream>
#include <iostream>

namespace {

std::string Format(const char* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

}  // namespace

void Report::CompareCost(const std::string& subject, const std::string& ours,
                         const std::string& bare, double goal, double factor)
{
    subjects.push_back({subject, Kind::Cost, ours, bare, goal, factor});
}

void Report::CompareRate(const std::string& subject, const std::string& ours,
                         const std::string& bare, double goal, double factor)
{
    subjects.push_back({subject, Kind::Rate, ours, bare, goal, factor});
}

void Report::CheckCounter(const std::string& subject, const std::string& benchmarkName,
                          const std::string& counter, double goal)
{
    subjects.push_back({subject, Kind::Counter, benchmarkName, counter, goal, 1.0});
}

void Report::ShowRate(const std::string& subject, const std::string& ours, const std::string& bare,
                      double factor)
{
    subjects.push_back({subject, Kind::Rate, ours, bare, std::nullopt, factor});
}

void Report::ShowCost(const std::string& subject, const std::string& ours, const std::string& bare)
{
    subjects.push_back({subject, Kind::Cost, ours, bare, std::nullopt, 1.0});
}

bool Report::ReportContext(const Context&)
{
    return true;
}

void Report::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs) {
        if (run.error_occurred) {
            std::cerr << run.benchmark_name() << ": " << run.error_message << '\n';
        } else if (run.repetitions == 1 || run.aggregate_name == "median") {
            medians[run.run_name.function_name] = run;
            std::cerr << "-- " << run.run_name.function_name << ": "
                      << Format("%.4g", run.GetAdjustedRealTime()) << ' '
                      << benchmark::GetTimeUnitString(run.time_unit) << '\n';
        }
    }
}

std::optional<double> Report::Measure(const Subject& subject) const
{
    const auto ours = medians.find(subject.ours);
    if (ours == medians.end()) {
        return std::nullopt;
    }
    if (subject.kind == Kind::Counter) {
        const auto counter = ours->second.counters.find(subject.bare);
        return counter == ours->second.counters.end()
                   ? std::nullopt
                   : std::optional<double>(counter->second.value);
    }
    const auto bare = medians.find(subject.bare);
    if (bare == medians.end()) {
        return std::nullopt;
    }
    const double cost = ours->second.real_accumulated_time / ours->second.iterations /
                        (bare->second.real_accumulated_time / bare->second.iterations) /
                        subject.factor;
    return subject.kind == Kind::Cost ? cost : 1.0 / cost;
}

bool Report::IsMet(const Subject& subject, double figure)
{
    return subject.kind == Kind::Rate ? figure >= *subject.goal : figure <= *subject.goal;
}

std::string Report::GoalOf(const Subject& subject)
{
    if (!subject.goal) {
        return "-";
    }
    return (subject.kind == Kind::Rate ? ">= " : "<= ") + Format("%.4g", *subject.goal);
}

void Report::Print(std::ostream& stream, const char* rowFormat) const
{
    for (const Subject& subject : subjects) {
        const std::optional<double> figure = Measure(subject);
        const std::string shown = figure ? Format("%.3g", *figure) : "not measured";
        const std::string met = !figure                   ? "no"
                                : !subject.goal           ? "-"
                                : IsMet(subject, *figure) ? "yes"
                                                          : "no";
        char row[256];
        std::snprintf(row, sizeof row, rowFormat, subject.name.c_str(), shown.c_str(),
                      GoalOf(subject).c_str(), met.c_str());
        stream << row;
    }
}

bool Report::PrintTable() const
{
    std::printf("| %-66s | %12s | %8s | met |\n|%s|%s|%s|-----|\n", "subject", "measured", "goal",
                std::string(68, '-').c_str(), std::string(14, '-').c_str(),
                std::string(10, '-').c_str());
    std::fflush(stdout);
    Print(std::cout, "| %-66s | %12s | %8s | %-3s |\n");
    std::cout.flush();
    for (const Subject& subject : subjects) {
        if (!Measure(subject)) {
            return false;
        }
    }
    return true;
}

bool Report::WriteTable(const std::string& path) const
{
    std::ofstream file(path);
    file << "subject,measured,goal,met\n";
    Print(file, "\"%s\",%s,%s,%s\n");
    return static_cast<bool>(file.flush());
}
