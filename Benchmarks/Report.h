// Report.h: turns pairs of benchmarks into a table of ratios.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

// Each subject compares two benchmarks of the same run, by the medians of their interleaved
// repetitions, or holds one figure against its goal. What was not measured is told as such.
class Report : public benchmark::BenchmarkReporter
{
public:
    // ours may cost at most `goal` times bare. factor: how many times bare's work ours does.
    void CompareCost(const std::string& subject, const std::string& ours, const std::string& bare,
                     double goal, double factor = 1.0);
    // ours must run at no less than `goal` times the rate of bare.
    void CompareRate(const std::string& subject, const std::string& ours, const std::string& bare,
                     double goal, double factor = 1.0);
    // A figure that a benchmark gives as a counter; it may be at most `goal`.
    void CheckCounter(const std::string& subject, const std::string& benchmarkName,
                      const std::string& counter, double goal);
    // For the reader; nothing is asked of it.
    void ShowRate(const std::string& subject, const std::string& ours, const std::string& bare,
                  double factor = 1.0);
    void ShowCost(const std::string& subject, const std::string& ours, const std::string& bare);

    // benchmark::BenchmarkReporter
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    // The table on standard output and as comma-separated values. False: a subject has no figure.
    bool PrintTable() const;
    bool WriteTable(const std::string& path) const;

private:
    enum class Kind { Cost, Rate, Counter };

    struct Subject
    {
        std::string name;
        Kind kind;
        std::string ours;
        std::string bare;  // of a counter: its name
        std::optional<double> goal;
        double factor;
    };

    std::optional<double> Measure(const Subject& subject) const;
    static bool IsMet(const Subject& subject, double figure);
    static std::string GoalOf(const Subject& subject);
    void Print(std::ostream& stream, const char* rowFormat) const;

    std::vector<Subject> subjects;
    std::map<std::string, Run> medians;  // by benchmark name
};
