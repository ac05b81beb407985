// A static object that is made at its first use, without allocating, and never destroyed: a host may exit
// while threads of the library still run.
//
//     static never_destroyed<monitor> instance;
//     return *instance;
#pragma once

#include <new>
#include <type_traits>

template <class T>
class never_destroyed {
 public:
    never_destroyed() { new (&storage_) T; }
    never_destroyed(const never_destroyed&) = delete;
    never_destroyed& operator=(const never_destroyed&) = delete;

    T& operator*() { return *std::launder(reinterpret_cast<T*>(&storage_)); }

 private:
    std::aligned_storage_t<sizeof(T), alignof(T)> storage_;
};
