// What a process holds: descriptors, threads, mappings. For tests that nothing is left behind.
#pragma once

#include <string>

int open_descriptors();
int running_threads();
// Maps of files whose path contains `text`.
int mappings_of(const std::string& text);

// Waits until the process has no more than `count` threads: a joined thread leaves the kernel's list a moment
// after its join. False after ten seconds.
bool wait_for_threads(int count);
