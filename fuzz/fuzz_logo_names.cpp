// Announcements of any content: the file name never leaves the logo root, and tells what it is made of.
#include <fuzzer/FuzzedDataProvider.h>

#include "fuzz/fuzz_support.h"
#include "src/logo_db/logo_rules.h"
#include "src/logo_db/spi_logo_data.h"
#include "src/logo_db/spi_logo_db.h"
#include "src/parse/si_media_info.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    spi::SiMediaInfo media;
    media.id.sid = input.ConsumeIntegral<std::uint32_t>();
    media.id.ecc = input.ConsumeIntegral<std::uint8_t>();
    media.id.scids = input.ConsumeIntegral<std::uint8_t>();
    media.width = input.ConsumeIntegral<std::uint16_t>();
    media.height = input.ConsumeIntegral<std::uint16_t>();
    media.mime = input.ConsumeRandomLengthString(16);
    media.url = input.ConsumeRemainingBytesAsString();
    const std::string url = media.url;
    expect(media.get_ext().size() <= 8, "extensions have eight characters at most");
    spi::SpiLogoInfo announced = media.logo_info();
    expect(announced.name == url, "the announcement keeps the content name");

    const std::string name = spi::SpiLogoData(announced).get_meta().name;
    expect(name.find_first_not_of("0123456789ABCDEF_.PNGJ") == std::string::npos,
           "nothing else in a file name");
    expect(name.find('/') == std::string::npos && name[0] != '.', "a file name stays in its directory");
    expect(name.size() <= 8 + 1 + 2 + 4, "file names are short");
    const bool usual =
        media.id.sid >= 0x1000 && media.id.sid < 0x10000 && media.id.ecc >= 0x10 && media.id.scids < 16;
    const std::string prefix =
        spi::station_prefix(media.id.ecc, static_cast<int>(media.id.sid), media.id.scids) + "_";
    if (usual)
        expect(name.compare(0, prefix.size(), prefix) == 0, "the searches find the usual station's files");
    const spi::SpiLogoInfo named = spi::SpiLogoData(announced).get_meta();
    if (spi::refusal_of_logo(named, 22528) == spi::logo_refusal::none) {
        expect(announced.image_format == 2, "only PNG is written");
        expect(spi::refusal_of_logo(named, 22529) == spi::logo_refusal::too_large, "and no large image");
    }
    return 0;
}
