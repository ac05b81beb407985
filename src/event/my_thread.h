// Binds a member function to its object, as the body of a ZebThread.
#pragma once

namespace spi {

template <class T>
struct my_thread {
    T* object;
    void (T::*member)();

    void operator()() { (object->*member)(); }
};

}  // namespace spi
