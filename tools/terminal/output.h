// Standard output, or another descriptor, with every error noticed: a closed pipe and a full disk must not
// pass for a complete replay. One thread only.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace dabspi {

class output {
 public:
    // `interrupted` is asked when a write is cut short by a signal; true gives up (error EINTR).
    explicit output(int descriptor, std::function<bool()> interrupted = {});

    // Both return false after the first error, and from then on; `error` is its number. Text is kept back
    // until flush(), or until much has gathered.
    bool write(std::string_view text);
    bool flush();

    int error() const { return error_; }

 private:
    int descriptor_;
    std::function<bool()> interrupted_;
    std::string kept_;
    int error_ = 0;
};

// All of a text at once. False, with a message on standard error, when it cannot be written.
bool print(std::string_view text, int descriptor);

}  // namespace dabspi
