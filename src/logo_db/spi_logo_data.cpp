#include "src/logo_db/spi_logo_data.h"

#include <mutex>

#include "platform/never_destroyed.h"
#include "src/logo_db/logo_files.h"
#include "src/logo_db/logo_rules.h"
#include "src/parse/hexadecimal.h"

namespace spi {
namespace {

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
        append_hexadecimal(name, service_.ecc);
        append_hexadecimal(name, service_.sid);
        append_hexadecimal(name, service_.scids);
    } else {
        append_hexadecimal(name, service_.sid);
    }
    name += '_';
    append_hexadecimal(name, size_code_);
    name += '.';
    if (image_format_ == LOGO_FORMAT_JPEG) name += "JPG";
    if (image_format_ == LOGO_FORMAT_PNG) name += "PNG";
    return name;
}

bool SpiLogoData::write_logo(const MotBody& body) const {
    const std::string directory = root();
    if (directory.empty() || refusal_of_logo(get_meta(), body.size) != logo_refusal::none) return false;
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

}  // namespace spi
