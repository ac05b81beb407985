#include "tools/air/mot/carousel_counts.h"

namespace dabspi::air {

drop_words words_of(carousel_drop cause) {
    switch (cause) {
        case carousel_drop::group_crc: return {"group_crc", "data groups with a wrong CRC"};
        case carousel_drop::group_ill_formed: return {"group_ill_formed", "ill-formed data groups"};
        case carousel_drop::group_without_segment:
            return {"group_without_segment", "data groups without segment or transport identifier"};
        case carousel_drop::group_of_other_type:
            return {"group_of_other_type", "data groups that are not MOT's"};
        case carousel_drop::scrambled: return {"scrambled", "data groups under conditional access"};
        case carousel_drop::segment_size: return {"segment_size", "segments that are shorter than they say"};
        case carousel_drop::header_beside_directory:
            return {"header_beside_directory", "header segments beside a directory"};
        case carousel_drop::other_version:
            return {"other_version", "entities of which another version began"};
        case carousel_drop::misfitting_segments:
            return {"misfitting_segments", "entities with segments that do not go together"};
        case carousel_drop::memory_limit: return {"memory_limit", "entities beyond the memory limit"};
        case carousel_drop::header_ill_formed: return {"header_ill_formed", "ill-formed headers"};
        case carousel_drop::update_without_object:
            return {"update_without_object", "header updates without their object"};
        case carousel_drop::directory_ill_formed: return {"directory_ill_formed", "ill-formed directories"};
        case carousel_drop::directory_not_unpacked:
            return {"directory_not_unpacked", "directories that cannot be unpacked"};
        case carousel_drop::directory_too_large:
            return {"directory_too_large", "directories that are too large"};
        case carousel_drop::objects_beyond_limit:
            return {"objects_beyond_limit", "listed objects beyond the limit"};
        case carousel_drop::listed_twice: return {"listed_twice", "objects that a directory lists twice"};
        case carousel_drop::body_size: return {"body_size", "bodies of another size than their header says"};
        case carousel_drop::without_name: return {"without_name", "objects without a name"};
        case carousel_drop::unknown_compression:
            return {"unknown_compression", "objects that are compressed in an unknown way"};
        case carousel_drop::not_unpacked: return {"not_unpacked", "objects that cannot be unpacked"};
        case carousel_drop::too_large_unpacked:
            return {"too_large_unpacked", "objects that are too large unpacked"};
        case carousel_drop::unlisted: return {"unlisted", "bodies that nothing lists"};
        case carousel_drop::count: break;
    }
    return {"", ""};
}

}  // namespace dabspi::air
