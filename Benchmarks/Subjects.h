// Subjects.h: what is measured. Each function registers its benchmarks and tells the report how to
// compare them.
#pragma once

class Report;

void AddBufferSubjects(Report& report);  // BufferBenchmarks.cpp: no window
void AddCertificateSubjects(Report& report);  // CertificateBenchmarks.cpp
void AddCompletionSubjects(Report& report);  // CompletionBenchmarks.cpp: windows
void AddDialogSubjects(Report& report);  // DialogBenchmarks.cpp: windows, a search
void AddListSubjects(Report& report);  // ListBenchmarks.cpp: windows
void AddLoadSubject(Report& report);  // LoadBenchmark.cpp
void AddNetworkSubjects(Report& report);  // NetworkBenchmarks.cpp: sockets, deferred calls
void AddPacketSubjects(Report& report);  // PacketBenchmarks.cpp: no window
void AddPaintSubjects(Report& report);  // PaintBenchmarks.cpp
void AddScrollSubjects(Report& report);  // ScrollBenchmarks.cpp
void AddSettingsSubjects(Report& report);  // SettingsBenchmarks.cpp: registry, messages, settings
