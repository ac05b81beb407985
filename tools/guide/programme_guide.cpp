#include "tools/guide/programme_guide.h"

#include <algorithm>
#include <cstdio>

namespace dabspi::guide {

namespace {

constexpr std::int64_t kSecondsOfDay = 86400;

}  // namespace

const std::vector<text>& texts::longest() const {
    return !long_texts.empty() ? long_texts : !medium_texts.empty() ? medium_texts : short_texts;
}

const text* texts::first() const {
    const std::vector<text>& all = longest();
    return all.empty() ? nullptr : &all.front();
}

long programme::local_day() const {
    const std::int64_t local = local_start();
    return static_cast<long>((local - (local % kSecondsOfDay + kSecondsOfDay) % kSecondsOfDay) /
                             kSecondsOfDay);
}

std::string service_id::text() const {
    char made[32];
    std::snprintf(made, sizeof made, sid > 0xFFFF ? "%02x.%08x.%x" : "%02x.%04x.%x", unsigned{ecc},
                  unsigned{sid}, unsigned{scids});
    return made;
}

std::string ensemble_id::text() const {
    char made[16];
    std::snprintf(made, sizeof made, "%02x.%04x", unsigned{ecc}, unsigned{eid});
    return made;
}

const service* programme_guide::find(const service_id& id) const {
    const auto found =
        std::lower_bound(services.begin(), services.end(), id,
                         [](const service& each, const service_id& wanted) { return each.id < wanted; });
    return found == services.end() || found->id != id ? nullptr : &*found;
}

std::string name_of(const service& of) {
    const text* const name = of.names.first();
    return name == nullptr ? of.id.text() : name->value;
}

std::string name_of(const programme& of) {
    const text* const name = of.names.first();
    return name == nullptr ? std::string() : name->value;
}

}  // namespace dabspi::guide
