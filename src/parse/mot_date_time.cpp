#include "src/parse/mot_date_time.h"

#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>

namespace spi {
namespace {

// Every character of the part must be a digit: "20xx" is refused as a whole, and so are signs and blanks. At
// most four digits come here, so a value out of range cannot occur.
unsigned number(const std::string& text, std::size_t first, std::size_t count) {
    unsigned value = 0;
    for (std::size_t i = first; i < first + count; ++i) {
        if (text[i] < '0' || text[i] > '9') throw std::invalid_argument("stoi");
        value = value * 10 + static_cast<unsigned>(text[i] - '0');
    }
    return value;
}

std::ostringstream two_digit_stream() {
    std::ostringstream out;
    out.imbue(std::locale::classic());  // a host's locale may group digits
    out << std::setfill('0');
    return out;
}

}  // namespace

void MotDateTime::put_date(const std::string& text) {
    if (text.size() != 8) return;
    year = static_cast<std::uint16_t>(number(text, 0, 4));
    month = static_cast<std::uint8_t>(number(text, 4, 2));
    day = static_cast<std::uint8_t>(number(text, 6, 2));
}

void MotDateTime::put_time(const std::string& text) {
    if (text.size() != 4) return;
    hour = static_cast<std::uint8_t>(number(text, 0, 2));
    minute = static_cast<std::uint8_t>(number(text, 2, 2));
}

std::string MotDateTime::date() const {
    std::ostringstream out = two_digit_stream();
    out << year << '-' << std::setw(2) << unsigned{month} << '-' << std::setw(2) << unsigned{day};
    return out.str();
}

std::string MotDateTime::time() const {
    std::ostringstream out = two_digit_stream();
    out << std::setw(2) << unsigned{hour} << ':' << std::setw(2) << unsigned{minute};
    return out.str();
}

}  // namespace spi
