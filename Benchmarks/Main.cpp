// Benchmarks.exe [FILE.csv] [Google Benchmark's options]: prints the table, writes it to FILE.
#include "Report.h"
#include "Subjects.h"

#include <afxwin.h>

#include <iostream>
#include <vector>

int main(int argc, char** argv)
{
    if (!AfxWinInit(::GetModuleHandleW(nullptr), nullptr, ::GetCommandLineW(), SW_SHOWNORMAL)) {
        return 2;
    }
    std::string table;
    std::vector<char*> arguments{argv[0]};
    // Interleaved, so that what else the machine does falls on both sides of every pair.
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=7";
    char aggregates[] = "--benchmark_report_aggregates_only=true";
    char minimum[] = "--benchmark_min_time=0.05";
    for (char* own : {interleaving, repetitions, aggregates, minimum}) {
        arguments.push_back(own);
    }
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] == '-') {
            arguments.push_back(argv[i]);
        } else {
            table = argv[i];
        }
    }

    Report report;
    AddBufferSubjects(report);
    AddCompletionSubjects(report);
    AddDialogSubjects(report);
    AddPacketSubjects(report);
    AddNetworkSubjects(report);
    AddPaintSubjects(report);
    AddScrollSubjects(report);
    AddSettingsSubjects(report);
    AddCertificateSubjects(report);
    AddListSubjects(report);
    AddLoadSubject(report);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks(&report);
    benchmark::Shutdown();
    const bool complete = report.PrintTable();
    if (!table.empty() && !report.WriteTable(table)) {
        std::cerr << "cannot write " << table << '\n';
        return 1;
    }
    return complete ? 0 : 1;
}
