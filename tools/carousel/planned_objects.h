// The objects of a carousel from a plan (docs/plans.md), and what single objects become.
#pragma once

#include <string>

#include "tools/carousel/carousel_objects.h"

namespace dabspi::carousel {

// Of one of the plan's carousels; of a plan without any, all that its steps feed.
void read_planned_objects(const std::string& path, const std::string& text, const reading_options& how,
                          carousel_objects& to);

// An SPI object; with an empty name it gets the usual one.
carousel_object spi_carousel_object(const std::string& source, spi_object::bytes body,
                                    const std::string& name);
// Nothing if the body is no image.
std::optional<carousel_object> image_carousel_object(const std::string& source, spi_object::bytes body,
                                                     const std::string& name);

}  // namespace dabspi::carousel
