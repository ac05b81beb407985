#include "tools/air/mot/carousel_counts.h"

namespace dabspi::air {

const char* drop_text(carousel_drop cause) {
    switch (cause) {
        case carousel_drop::group_crc: return "data groups with a wrong CRC";
        case carousel_drop::group_ill_formed: return "ill-formed data groups";
        case carousel_drop::group_without_segment:
            return "data groups without segment or transport identifier";
        case carousel_drop::group_of_other_type: return "data groups that are not MOT's";
        case carousel_drop::scrambled: return "data groups under conditional access";
        case carousel_drop::segment_size: return "segments that are shorter than they say";
        case carousel_drop::header_beside_directory: return "header segments beside a directory";
        case carousel_drop::other_version: return "entities of which another version began";
        case carousel_drop::misfitting_segments: return "entities with segments that do not go together";
        case carousel_drop::memory_limit: return "entities beyond the memory limit";
        case carousel_drop::header_ill_formed: return "ill-formed headers";
        case carousel_drop::update_without_object: return "header updates without their object";
        case carousel_drop::directory_ill_formed: return "ill-formed directories";
        case carousel_drop::directory_not_unpacked: return "directories that cannot be unpacked";
        case carousel_drop::directory_too_large: return "directories that are too large";
        case carousel_drop::objects_beyond_limit: return "listed objects beyond the limit";
        case carousel_drop::listed_twice: return "objects that a directory lists twice";
        case carousel_drop::body_size: return "bodies of another size than their header says";
        case carousel_drop::without_name: return "objects without a name";
        case carousel_drop::unknown_compression: return "objects that are compressed in an unknown way";
        case carousel_drop::not_unpacked: return "objects that cannot be unpacked";
        case carousel_drop::too_large_unpacked: return "objects that are too large unpacked";
        case carousel_drop::unlisted: return "bodies that nothing lists";
        case carousel_drop::count: break;
    }
    return "";
}

}  // namespace dabspi::air
