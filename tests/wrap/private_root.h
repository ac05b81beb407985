// Runs a piece of a test in a process of its own, whose file-system tree is its own too: the system's
// directories are bound into it, and "/temp", "/dev/shm" and whatever else is made at its top vanish with the
// process. Needs mount namespaces, by privilege or by user namespaces; not every machine permits them.
#pragma once

#include <functional>
#include <string>

enum class private_root_result { kPassed, kFailed, kNotPermitted };

// `action` runs in the new process and gives what went wrong, or nothing. `mount_point` is an empty
// directory. The calling process must have one thread only. What went wrong is in `failure`.
private_root_result in_private_root(const std::string& mount_point,
                                    const std::function<std::string()>& action, std::string& failure);
