// DABSPI_EXPORT marks what libdabspi.so offers to its host. Everything else is compiled with hidden
// visibility.
#pragma once

#define DABSPI_EXPORT __attribute__((visibility("default")))
