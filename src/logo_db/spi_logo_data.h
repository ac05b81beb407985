// One announced logo of one station, and its file: the name that it gets in the logo root, and the writing of
// it.
//
// Used on the logo worker's thread only, but for the root, which all servers of a process share.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/mot_body.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_logo_info.h"

namespace spi {

class SpiLogoData {
 public:
    // From an announcement. Its string, the content name, is not kept; the file name is made instead.
    explicit SpiLogoData(const SpiLogoInfo& announced);

    // The record with the file name as its string.
    SpiLogoInfo get_meta() const;

    // ECC, service identifier and SCIdS, or a 32-bit service identifier alone; then "_", the size code, and
    // ".JPG", ".PNG" or "."; numbers in upper-case hexadecimal without padding: E1C2210_3.PNG. A service
    // identifier below 0x1000 makes the station part shorter than the one that the searches in the logo root
    // look for (logo_rules.h). Deliberate: stations have four-digit identifiers. The ECC is written alike in
    // both.
    std::string create_filename() const;

    // Writes the body to its file in the root, over any file that is there, without a temporary file. True
    // when every byte is in the file. False, without touching the disk, without a root and for what
    // refusal_of_logo refuses.
    bool write_logo(const MotBody& body) const;

    // The logo directory; one for the whole library, empty until it is set. Any thread.
    static void set_root(const std::string& directory);
    static std::string root();

 private:
    ServElemId service_;
    std::uint8_t image_format_;
    std::uint8_t size_code_;
    std::string file_name_;
};

}  // namespace spi
