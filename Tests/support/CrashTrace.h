// CrashTrace.h: turns a crash of a test program into a backtrace on standard error.
#pragma once

// Prints "#n module!0xaddress" for the fault and the calls found on its stack, then ends the process
// with status 3. Covers access violations, illegal instructions (the debug build's checks trap with
// one), division by zero, stack overflow, heap corruption, abort() and exceptions that nobody
// catches. tools/run-under-wine turns the addresses into functions, files and lines.
void InstallCrashTrace();
