// What an object says, statement by statement, whatever the order and the coding in which it says it.
#pragma once

#include <set>
#include <string>

#include "tools/spi/tree.h"

// "service dab:ce1.c185.c221.0: mediumName = Radio", "programme 2026-03-02T09:00:00Z: location/time/@duration
// = PT1H". Times are in UTC, genres without the year that has no coding, nothing of languages.
std::set<std::string> statements_of(const dabspi::spi_object::object& of);
