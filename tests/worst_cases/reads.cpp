#include "tests/worst_cases/reads.h"

#include <algorithm>
#include <string>

#include "src/parse/read_buffer.h"

namespace {

std::int64_t furthest_read = -1;  // of the test's own thread: the parser's handlers are called on it

void note(const spi::ReadBuffer& buffer) {
    if (buffer.in_body()) furthest_read = std::max<std::int64_t>(furthest_read, buffer.pos);
}

}  // namespace

namespace reads {

void forget() {
    furthest_read = -1;
}
std::int64_t furthest() {
    return furthest_read;
}

}  // namespace reads

// read_tag(), ru8(), ru16(), ru24(), ru32(), and both forms of read_string().
extern "C" {
std::uint8_t __real__ZN3spi10ReadBuffer8read_tagEv(spi::ReadBuffer* self);
std::uint8_t __real__ZN3spi10ReadBuffer3ru8Ev(spi::ReadBuffer* self);
std::uint16_t __real__ZN3spi10ReadBuffer4ru16Ev(spi::ReadBuffer* self);
std::uint32_t __real__ZN3spi10ReadBuffer4ru24Ev(spi::ReadBuffer* self);
std::uint32_t __real__ZN3spi10ReadBuffer4ru32Ev(spi::ReadBuffer* self);
std::uint32_t __real__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEj(
    spi::ReadBuffer* self, std::string& out, std::uint32_t len);
std::uint32_t
__real__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEjRKNS_13SpiTokenTableE(
    spi::ReadBuffer* self, std::string& out, std::uint32_t len, const spi::SpiTokenTable& tokens);

std::uint8_t __wrap__ZN3spi10ReadBuffer8read_tagEv(spi::ReadBuffer* self) {
    note(*self);
    return __real__ZN3spi10ReadBuffer8read_tagEv(self);
}
std::uint8_t __wrap__ZN3spi10ReadBuffer3ru8Ev(spi::ReadBuffer* self) {
    note(*self);
    return __real__ZN3spi10ReadBuffer3ru8Ev(self);
}
std::uint16_t __wrap__ZN3spi10ReadBuffer4ru16Ev(spi::ReadBuffer* self) {
    note(*self);
    return __real__ZN3spi10ReadBuffer4ru16Ev(self);
}
std::uint32_t __wrap__ZN3spi10ReadBuffer4ru24Ev(spi::ReadBuffer* self) {
    note(*self);
    return __real__ZN3spi10ReadBuffer4ru24Ev(self);
}
std::uint32_t __wrap__ZN3spi10ReadBuffer4ru32Ev(spi::ReadBuffer* self) {
    note(*self);
    return __real__ZN3spi10ReadBuffer4ru32Ev(self);
}
std::uint32_t __wrap__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEj(
    spi::ReadBuffer* self, std::string& out, std::uint32_t len) {
    note(*self);
    return __real__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEj(
        self, out, len);
}
std::uint32_t
__wrap__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEjRKNS_13SpiTokenTableE(
    spi::ReadBuffer* self, std::string& out, std::uint32_t len, const spi::SpiTokenTable& tokens) {
    note(*self);
    return __real__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEjRKNS_13SpiTokenTableE(
        self, out, len, tokens);
}
}
