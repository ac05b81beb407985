#include "tests/tools/air/container/collected.h"

#include <gtest/gtest.h>

namespace air_tests {

namespace mb = multiplex_builder;

collected collect(const mb::bytes& file, std::size_t step, const std::string& flow) {
    dabspi::air::open_options options;
    options.flow = flow;
    auto in =
        dabspi::air::open_frames(std::make_unique<dabspi::air::memory_source>(file, step), "test", options);
    collected all;
    all.kind = in.found.words;
    all.error = in.error;
    if (in.frames == nullptr) return all;
    for (dabspi::air::frame each; in.frames->next(each);) {
        EXPECT_EQ(each.index, all.frames.size());
        mb::logical_frame copy;
        copy.count = each.count;
        copy.fic.assign(each.fic.begin(), each.fic.end());
        for (const dabspi::air::sub_channel_bytes& from : each.sub_channels)
            copy.sub_channels.push_back(
                {from.id, from.start, from.tpl, {from.bytes.begin(), from.bytes.end()}});
        all.frames.push_back(copy);
        all.missing_before.push_back(each.missing_before);
        all.damaged.push_back(each.damaged);
    }
    all.statistics = in.frames->statistics();
    EXPECT_EQ(all.statistics.frames, all.frames.size());
    return all;
}

bool same_content(const mb::logical_frame& a, const mb::logical_frame& b) {
    if (a.count % 250 != b.count % 250 || a.fic != b.fic || a.sub_channels.size() != b.sub_channels.size())
        return false;
    for (std::size_t i = 0; i < a.sub_channels.size(); ++i) {
        const mb::sub_channel& one = a.sub_channels[i];
        const mb::sub_channel& other = b.sub_channels[i];
        if (one.id != other.id || one.start != other.start || one.tpl != other.tpl ||
            one.content != other.content)
            return false;
    }
    return true;
}

void expect_same(const std::vector<mb::logical_frame>& got, const std::vector<mb::logical_frame>& expected) {
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_TRUE(same_content(got[i], expected[i])) << "frame " << i;
}

}  // namespace air_tests
