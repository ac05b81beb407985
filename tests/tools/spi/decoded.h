// Words for tests of trees: an object's nodes by path, its problems by code.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testkit/spi_builder_objects.h"
#include "tools/spi/decode.h"

namespace so = dabspi::spi_object;
namespace sb = spi_builder;

// The only one; fails the test where there is none, or another.
inline so::problem the_only(const std::vector<so::problem>& problems) {
    EXPECT_EQ(problems.size(), 1U);
    return problems.empty() ? so::problem{so::problem_code::empty_object, 0, "none", ""} : problems.front();
}

// The node at a path like "epg/schedule/programme/@shortId"; the first of several. Fails the test, and gives
// an empty node, when there is none.
inline const so::node& node_at(const so::object& in, const std::string& path) {
    static const so::node none;
    const so::node* found = nullptr;
    so::visit(in, [&](const so::node& each, const std::vector<const so::node*>& above) {
        std::string here;
        for (const so::node* outer : above)
            here += so::shown_name(*outer) + "/";
        if (found == nullptr && here + so::shown_name(each) == path) found = &each;
    });
    if (found == nullptr) ADD_FAILURE() << "no node at " << path;
    return found == nullptr ? none : *found;
}

// "length-cut@12", in the order of the tree.
inline std::vector<std::string> codes_of(const so::object& in) {
    std::vector<std::string> codes;
    for (const so::problem_at& each : so::problems_of(in))
        codes.push_back(std::string(so::code_name(each.what->code)) + "@" +
                        std::to_string(each.what->offset));
    return codes;
}

// What the only problem says of the receiver.
inline std::string receiver_of(const so::object& in) {
    const auto problems = so::problems_of(in);
    if (problems.size() != 1) ADD_FAILURE() << "there are " << problems.size() << " problems";
    return problems.empty() ? "" : problems.front().what->receiver;
}

// A programme information object around the content of one programme.
inline sb::bytes around_programme(const sb::bytes& content) {
    return sb::elem(sb::tag::epg, {sb::elem(sb::tag::schedule, {sb::elem(sb::tag::programme, content)})});
}

// A service information object around the content of one service.
inline sb::bytes around_service(const sb::bytes& content) {
    return sb::elem(sb::tag::service_information,
                    {sb::elem(sb::tag::ensemble, {sb::elem(sb::tag::service, content)})});
}
