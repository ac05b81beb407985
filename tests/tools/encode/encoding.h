// Short words for tests of the encoder: documents, and what comes of them.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testkit/spi_builder_objects.h"
#include "tools/encode/broadcast_object.h"

namespace sb = spi_builder;

inline const std::string kNamespace = "http://www.worlddab.org/schemas/spi/31";

inline std::string si_document(const std::string& content) {
    return "<serviceInformation xmlns=\"" + kNamespace + "\">" + content + "</serviceInformation>";
}

inline std::string pi_document(const std::string& content) {
    return "<epg xmlns=\"" + kNamespace + "\">" + content + "</epg>";
}

inline std::string programme_document(const std::string& content) {
    return pi_document("<schedule><programme>" + content + "</programme></schedule>");
}

// The content of the one service of an ensemble.
inline std::string service_document(const std::string& content) {
    return si_document("<ensemble id=\"e0.10c1\"><service>" + content + "</service></ensemble>");
}

inline dabspi::encoded_document encoded(const std::string& document,
                                        const dabspi::encode_options& options = {}) {
    return encode_document(dabspi::xml_source(document), options);
}

inline dabspi::encoded_document leniently(const std::string& document) {
    dabspi::encode_options options;
    options.lenient = true;
    return encoded(document, options);
}

inline std::vector<std::string> texts_of(const std::vector<dabspi::source_note>& notes) {
    std::vector<std::string> texts;
    for (const dabspi::source_note& each : notes)
        texts.push_back(note_text("a.xml", each));
    return texts;
}

inline std::vector<std::string> errors_of(const std::string& document) {
    return texts_of(encoded(document).errors);
}

// The bytes of the one object, without tokens.
inline sb::bytes object_of(const dabspi::encoded_document& made) {
    if (made.objects.size() != 1) {
        ADD_FAILURE() << made.objects.size() << " objects; " << testing::PrintToString(texts_of(made.errors));
        return {};
    }
    return write_object(made.objects.front().top);
}

inline sb::bytes object_of(const std::string& document) {
    return object_of(encoded(document));
}
