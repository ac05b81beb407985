#include "src/parse/mot_date_time.h"

#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>

namespace spi {
namespace {

// By the standard conversion, which passes over leading blanks and takes a sign: "2016 1 7" is a date. It
// must use the whole part: "20xx" is refused, not read as 20.
int number(const std::string& text, std::size_t first, std::size_t count) {
    std::size_t used = 0;
    const int value = std::stoi(text.substr(first, count), &used);
    if (used != count) throw std::invalid_argument("stoi");
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
