// The logo store worker (QID_LOGODB): remembers which logos each service has announced, recognises the images
// when they arrive, has them written, and tells the listener notifier.
//
// The table is touched on the worker's own thread only, so there is no lock. Announcements are never merged:
// they stay until an image takes them, or the table is cleared.
#pragma once

#include <string>

#include "src/event/event_proc.h"
#include "src/logo_db/logo_rules.h"
#include "src/logo_db/spi_logo_data.h"
#include "src/parse/mot_body.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/si_service_info.h"
#include "src/parse/spi_logo_info.h"

namespace spi {

class SpiLogoDb final : public event_proc {
 public:
    enum image_result : int { kHandled = 0, kRefused = 1 };

    SpiLogoDb();
    ~SpiLogoDb() override;

    void process_event(event& e) override;

    // Records what a description announces under `service`, with which the description was received. Always
    // 0.
    int handle_meta(const ServElemId& service, const SiServiceInfo& description);

    // See is_logo_image.
    bool valid_metadata(const MotBodyMetadata& metadata) const;

    // Writes an image once for each announcement of its content name, and uses these announcements up,
    // whether they were written, skipped or failed. The image's own format is not compared with the announced
    // one. kRefused for what is no image, and for services without announcements: an image that comes before
    // its announcement is lost.
    int handle_bodyimg(const MotBodyMetadata& metadata, MotBody&& body, const ServElemId& service);

    // True only for a 128 x 128 logo whose station has a 320 x 240 file already.
    bool isExist_SizeLogo_LGRECTS(const SpiLogoInfo& logo, const std::string& root) const;

    // After a failed write: deletes the station's files of that size, whatever they are, an older good one
    // too. Only when a write could have begun at all. The result is deleteCorruptedFile's, or 0 when there
    // was nothing to do.
    int removeLogo(const SpiLogoInfo& logo, const std::string& root, const MotBody& body) const;

    // ---- the searches in the logo root ----

    // Lower-case hexadecimal, no prefix, no padding.
    static std::string toString(unsigned value);
    // True when the station has a 320 x 240 file, of any format. A missing root is reported on the debug
    // channel.
    static bool isFindLargeSizeLogo(int ecc, int sid, int scids, const std::string& root);
    // False only when the root is missing, which is reported.
    static bool deleteCorruptedFile(int ecc, int sid, int scids, int size_code, const std::string& root);

 private:
    announcement_table<SpiLogoData> logos_;
};

}  // namespace spi
