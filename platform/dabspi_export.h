// DABSPI_EXPORT marks what libdabspi.so offers to its host. Everything else is compiled with hidden
// visibility.
#pragma once

// In front of a class or function that hosts use.
#define DABSPI_EXPORT __attribute__((visibility("default")))
