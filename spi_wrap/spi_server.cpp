#include "spi_wrap/spi_server.h"

#include <string>

#include "platform/zeb_file_sys.h"
#include "spi_wrap/sys_data_information.h"

namespace spi_wrap {
namespace {

const char* const kTempRoot = "/temp/dab";
const char* const kLogoDirectory =
    "/HdStationLogo/";  // appended as it stands: no separator is added or removed

}  // namespace

spi_server::spi_server(ISpiListener* listener) : adaptor_(std::make_shared<spi_cb>(listener)) {
    const SysDataInformation block;  // open until the core has been made
    std::string logo_root = block.storage_path() + kLogoDirectory;
    // Whether this succeeds is deliberately not looked at: no temporary file is ever made.
    if (!ZebFileSys::IsExist(kTempRoot)) ZebFileSys::CreateDirectory(kTempRoot, true);
    if (!ZebFileSys::IsExist(logo_root) && !ZebFileSys::CreateDirectory(logo_root, true))
        logo_root = kTempRoot;
    if (adaptor_) core_ = new spi::SpiServer(adaptor_, kTempRoot, logo_root);
}

spi_server::~spi_server() {
    delete core_;
}

}  // namespace spi_wrap
