// Binds a member function to its object, as the body of a ZebThread.
#pragma once

namespace spi {

template <class T>
struct my_thread {
    T* object;            // not owned; must outlive the thread
    void (T::*member)();  // the thread's body

    // Calls it.
    void operator()() { (object->*member)(); }
};

}  // namespace spi
