// Where a virtual operation stands in its class's table of virtual operations. Hosts that were built earlier
// call by these places, so that they are part of the interface.
#pragma once

#include <cstddef>
#include <cstring>

// By the C++ ABI of Itanium and of ARM: a pointer to a virtual member function holds the offset in the table,
// plus 1 (Itanium), or with the mark in the second word's lowest bit (ARM).
template <class Operation>
std::ptrdiff_t virtual_slot(Operation operation) {
    std::ptrdiff_t words[2] = {};
    static_assert(sizeof operation == sizeof words, "not a pointer to a member function");
    std::memcpy(words, &operation, sizeof words);
    const std::ptrdiff_t offset = (words[1] & 1) != 0 ? words[0] : words[0] - 1;
    return offset / static_cast<std::ptrdiff_t>(sizeof(void*));
}
