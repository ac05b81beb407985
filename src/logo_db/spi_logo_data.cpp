#include "src/logo_db/spi_logo_data.h"

#include <mutex>

#include "platform/never_destroyed.h"
#include "src/logo_db/logo_files.h"

namespace spi {
namespace {

constexpr std::uint32_t kFirst32BitSid = 0x10000;
const char* const DIR_SEP = "/";

struct shared_root {
    std::mutex mutex;
    std::string s_mRoot;  // guarded by mutex
};

// Never destroyed: a host may exit while a server lives.
shared_root& logo_root() {
    static never_destroyed<shared_root> instance;
    return *instance;
}

// Upper case, no prefix, no padding. No stream: a name is made for every announcement, and a stream would ask
// the host's locale first.
void append_hex(std::string& text, std::uint32_t value) {
    constexpr int kHighestDigit = 28;
    int shift = kHighestDigit;
    while (shift > 0 && value >> shift == 0)
        shift -= 4;
    for (; shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[value >> shift & 0xF];
}

}  // namespace

SpiLogoData::SpiLogoData(const SpiLogoInfo& announced)
    : service_(announced.service), image_format_(announced.image_format), size_code_(announced.size_code) {
    file_name_ = create_filename();
}

SpiLogoInfo SpiLogoData::get_meta() const {
    SpiLogoInfo info;
    info.service = service_;
    info.image_format = image_format_;
    info.size_code = size_code_;
    info.name = file_name_;
    return info;
}

std::string SpiLogoData::create_filename() const {
    std::string name;
    if (service_.sid < kFirst32BitSid) {
        append_hex(name, service_.ecc);
        append_hex(name, service_.sid);
        append_hex(name, service_.scids);
    } else {
        append_hex(name, service_.sid);
    }
    name += '_';
    append_hex(name, size_code_);
    name += '.';
    if (image_format_ == LOGO_FORMAT_JPEG) name += "JPG";
    if (image_format_ == LOGO_FORMAT_PNG) name += "PNG";
    return name;
}

bool SpiLogoData::write_logo(const MotBody& body) const {
    const std::string directory = root();
    if (directory.empty() || !is_writable_logo(get_meta(), body.size)) return false;
    return write_logo_file(directory + DIR_SEP + file_name_, body);
}

void SpiLogoData::set_root(const std::string& directory) {
    const std::lock_guard<std::mutex> lock(logo_root().mutex);
    logo_root().s_mRoot = directory;
}

std::string SpiLogoData::root() {
    const std::lock_guard<std::mutex> lock(logo_root().mutex);
    return logo_root().s_mRoot;
}

bool is_writable_logo(const SpiLogoInfo& logo, std::uint32_t body_size) {
    return logo.service.sid != 0 && logo.service.ecc != 0 && !logo.name.empty() &&
           logo.image_format == LOGO_FORMAT_PNG && logo.service.sid < kFirst32BitSid &&
           body_size <= kLargestLogo &&
           (logo.size_code == LOGO_SIZE_128x128 || logo.size_code == LOGO_SIZE_320x240);
}

}  // namespace spi
