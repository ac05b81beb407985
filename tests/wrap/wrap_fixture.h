// What the tests of the host-facing layer share: a sandbox, the debug messages, and the block's contents.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "testkit/sandbox.h"
#include "tests/support/captured_debug.h"
#include "tests/wrap/process_state.h"

constexpr std::size_t kBlockBytes = 5140;
constexpr std::uint32_t kPayloadBytes = 5136;

inline std::string file_content(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// A whole block with a storage path, and the rest of the payload filled up with `rest`.
inline std::string block_with(const std::string& storage_path, char rest = '\0',
                              std::uint32_t size_word = kPayloadBytes) {
    std::string block(sizeof size_word, '\0');
    std::memcpy(&block[0], &size_word, sizeof size_word);
    block += storage_path;
    if (block.size() < kBlockBytes) block += '\0';
    block.resize(kBlockBytes, rest);
    return block;
}

inline std::uint32_t size_word_of(const std::string& block) {
    std::uint32_t word = 0;
    if (block.size() >= sizeof word) std::memcpy(&word, block.data(), sizeof word);
    return word;
}

class Wrapped : public ::testing::Test {
 protected:
    void put_block(const std::string& bytes) {
        std::ofstream(here.block(), std::ios::binary | std::ios::trunc) << bytes;
    }
    std::string block() const { return file_content(here.block()); }
    bool is_directory(const std::string& name) const { return std::filesystem::is_directory(here.at(name)); }

    captured_debug debug;
    sandbox here;
};
