#include "tools/air/container/edi_fec.h"

#include <new>

extern "C" {
#include <fec.h>
}

namespace dabspi::air {

edi_fec::edi_fec() : decoder_(init_rs_char(8, 0x11D, 1, 1, kParity, 0)) {
    if (decoder_ == nullptr) throw std::bad_alloc();
}

edi_fec::~edi_fec() {
    free_rs_char(decoder_);
}

bool edi_fec::repair(code_word& word, std::array<int, kMostData + kParity>& missing,
                     std::size_t count) const {
    if (count > kParity) return false;
    return decode_rs_char(decoder_, word.data(), missing.data(), static_cast<int>(count)) >= 0;
}

}  // namespace dabspi::air
