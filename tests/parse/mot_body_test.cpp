// The bytes of one object: moved, never copied.
#include "src/parse/mot_body.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "testkit/bodies.h"

namespace {

using spi::MotBody;

static_assert(!std::is_copy_constructible_v<MotBody> && !std::is_copy_assignable_v<MotBody>,
              "a body is never copied");
static_assert(std::is_nothrow_move_constructible_v<MotBody> && std::is_nothrow_move_assignable_v<MotBody>,
              "moving a body cannot fail");

void expect_empty(const MotBody& body) {
    EXPECT_EQ(body.size, 0U);
    EXPECT_EQ(body.data, nullptr);
}

TEST(MotBody, NewOneIsEmpty) {
    expect_empty(MotBody());
}

TEST(MotBody, HoldsItsBytes) {
    const MotBody body = body_of({1, 2, 3});
    ASSERT_EQ(body.size, 3U);
    EXPECT_EQ(body.data[2], 3);
}

TEST(MotBody, WithoutAnArrayIsEmptyWhateverSizeWasNamed) {
    expect_empty(MotBody(7, nullptr));
}

TEST(MotBody, MovedFromIsEmptySizeIncluded) {
    MotBody source = body_of({1, 2, 3});
    const unsigned char* array = source.data.get();
    const MotBody target(std::move(source));
    EXPECT_EQ(target.size, 3U);
    EXPECT_EQ(target.data.get(), array);
    expect_empty(source);  // NOLINT(bugprone-use-after-move)
}

TEST(MotBody, MoveAssignedFromIsEmptyAndTheOldBytesAreReleased) {
    MotBody source = body_of({1, 2, 3});
    MotBody target = body_of({9, 9, 9, 9});
    target = std::move(source);
    ASSERT_EQ(target.size, 3U);
    EXPECT_EQ(target.data[0], 1);
    expect_empty(source);  // NOLINT(bugprone-use-after-move)
}

TEST(MotBody, MovingAnEmptyOneInEmptiesTheTarget) {
    MotBody target = body_of({9});
    target = MotBody();
    expect_empty(target);
}

TEST(MotBody, MovedIntoItselfIsUnchanged) {
    MotBody body = body_of({1, 2, 3});
    MotBody& same = body;
    body = std::move(same);
    ASSERT_EQ(body.size, 3U);
    EXPECT_EQ(body.data[1], 2);
}

TEST(MotBodyMetadata, NewOneIsZero) {
    const spi::MotBodyMetadata metadata;
    EXPECT_EQ(metadata.user_application_type, 0);
    EXPECT_EQ(metadata.content_type, 0);
    EXPECT_EQ(metadata.content_subtype, 0);
    EXPECT_EQ(metadata.content_name, "");
}

}  // namespace
