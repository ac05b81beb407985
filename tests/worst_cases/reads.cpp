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

extern "C" {
// Both forms of read_string().
std::uint32_t __real__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEj(
    spi::ReadBuffer* self, std::string& out, std::uint32_t len);
std::uint32_t
__real__ZN3spi10ReadBuffer11read_stringERNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEjRKNS_13SpiTokenTableE(
    spi::ReadBuffer* self, std::string& out, std::uint32_t len, const spi::SpiTokenTable& tokens);

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

// ReadBuffer::holds(), which every read of a tag, a length or a number asks. The class has it inline; where
// nothing is inlined, calls come here instead.
bool _ZNK3spi10ReadBuffer5holdsEj(const spi::ReadBuffer* self, std::uint32_t count);
bool _ZNK3spi10ReadBuffer5holdsEj(const spi::ReadBuffer* self, std::uint32_t count) {
    note(*self);
    return self->pos <= self->size && count <= self->size - self->pos;
}
}
