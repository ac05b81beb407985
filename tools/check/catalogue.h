// Everything that `dabspi check` can find, in one table: a stable code, how bad it is, why a receiver behaves
// so, and what remedies it. Pure data.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace dabspi::check {

enum class severity {
    note,     // by design, or harmless; worth knowing
    warning,  // a receiver shows less than it could, or something else than was meant
    error,    // what was sent is lost or read wrongly
};

enum class finding_code {
    // objects
    malformed,
    malformed_unread,
    misread,
    subtype_differs,
    subtype_blocks,
    subtype_not_read,
    content_type,
    changed_same_size,
    content_name_long,
    not_utf8,
    control_character,
    token_undefined,
    token_after_use,
    token_twice,
    token_too_long,
    text_as_id,
    no_ensemble_flag,
    negative_offset,
    // programmes
    no_scope_no_bearer,
    no_service,
    other_ensemble,
    before_ensemble,
    before_date,
    other_day,
    no_start,
    start_out_of_day,
    no_title,
    no_duration,
    duration_wrapped,
    same_start,
    // schedules
    gap,
    overlap,
    uncovered,
    no_tomorrow,
    no_programmes_today,
    schedule_ends,
    nothing_on,
    // logos
    logo_no_station,
    logo_32_bit,
    logo_jpeg,
    logo_format,
    logo_size,
    logo_not_sent,
    logo_not_announced,
    logo_early,
    logo_subtype,
    logo_too_large,
    logo_larger_there,
    logo_twice,
    logo_not_png,
    logo_other_size,
    logo_change_lost,
    // carousels
    spi_not_sent,
    spi_unreadable,
    directory_empty,
    never_completed,
    cycle_long,
    images_first,
    service_info_rare,
    fec_not_sent,
    object_compressed,
    names_in_two,
    name_case_differs,
    clock_missing,
    clock_day_off,
};

struct catalogue_entry {
    finding_code code;
    const char* name;  // "duration-wrapped": stable, in lower case, never used for anything else
    severity how_bad;
    const char* title;   // a few words
    const char* why;     // one sentence: what a receiver does
    const char* remedy;  // one sentence: what the broadcaster can do
    const char* more;    // for `dabspi explain`; paragraphs are separated by an empty line
};

const std::vector<catalogue_entry>& catalogue();  // in the order of the codes
const catalogue_entry& entry_of(finding_code code);
const catalogue_entry* find_entry(std::string_view name);  // null when there is none

const char* severity_name(severity of);  // "note"
std::optional<severity> severity_named(std::string_view name);

}  // namespace dabspi::check
