// Colours of a terminal, where they are wanted.
#pragma once

#include <string>

namespace dabspi {

enum class text_colour { plain, heading, faint, fault, remark, receiver };

class colouring {
 public:
    explicit colouring(bool coloured) : coloured_(coloured) {}

    std::string operator()(text_colour with, const std::string& text) const;

 private:
    bool coloured_;
};

// "always", "never", or "auto": a terminal that is not "dumb", and no NO_COLOR in the environment.
bool wants_colour(const std::string& mode, int descriptor);

}  // namespace dabspi
