// What only the carousel of a multiplex shows.

#include "tools/check/catalogue_entries.h"

namespace dabspi::check {

const std::vector<catalogue_entry>& carousel_entries() {
    static const std::vector<catalogue_entry> entries = {
        {finding_code::spi_not_sent, "spi-not-sent", severity::error, "SPI is announced and nothing is sent",
         "A receiver that finds the announcement opens the data service, and waits for objects in vain.",
         "Feed the carousel, or take user application 7 out of the FIC.",
         "FIG 0/13 lists user application 7 for a component, and no whole data group came on its packet "
         "address. Often the carousel's feed to the multiplexer has stopped, and the multiplexer sends "
         "padding."},
        {finding_code::spi_unreadable, "spi-unreadable", severity::note, "SPI that cannot be read here",
         "The SPI is announced on a component in another transport or under access control, which this check "
         "does not follow.",
         "Nothing needs to be done; do not expect these objects in the report.",
         "SPI in the X-PAD of audio components, under access control, or without MOT data groups is named "
         "and "
         "left out. Nothing of it counts in the other findings."},
        {finding_code::directory_empty, "directory-empty", severity::warning, "a directory without objects",
         "The directory is whole and lists nothing, so a receiver forgets what it had and shows no SPI.",
         "Look whether the carousel's content was lost; leave the announcement out as long as there is none.",
         "An empty directory is legal, and replaces the one before: objects that it does not list are gone. "
         "It "
         "is what remains when the source of the objects has failed and the carousel goes on."},
        {finding_code::never_completed, "never-completed", severity::warning,
         "an object that was never whole",
         "A receiver uses objects that it has received whole, and this one never was as long as the "
         "recording "
         "lasts.",
         "Look whether all of its segments are sent, with the size that its header says; or record for "
         "longer "
         "than the carousel's cycle.",
         "It is listed in the directory, or has a header, and segments of its body are missing, or its body "
         "cannot be used. In a recording that is shorter than the carousel's cycle some objects are "
         "naturally incomplete: \"dabspi scan\" tells the cycle."},
        {finding_code::cycle_long, "cycle-long", severity::warning, "a cycle of more than five minutes",
         "A listener who tunes in has to wait for a whole cycle until everything is there.",
         "Send fewer or smaller objects, give the carousel more bit rate, or repeat what matters more often.",
         "The cycle is the longest mean interval between two receptions of any object. Receivers are often "
         "switched on for minutes only; what takes longer than that is never shown to many listeners."},
        {finding_code::images_first, "images-first", severity::warning,
         "images before their announcement in every round",
         "Images that come before the service information are dropped, so a listener who tunes in waits for "
         "a second round for logos.",
         "Send service information in front of the images, directly behind the directory.",
         "A logo is written when its image comes after service information has announced it. Where each "
         "round "
         "has the images first, none of the first round is of use."},
        {finding_code::service_info_rare, "service-info-rare", severity::warning,
         "service information less often than images",
         "Images wait for service information: as long as it has not come they are dropped, however often "
         "they "
         "are sent.",
         "Repeat service information at least as often as images.",
         "It is small, and everything else depends on it. Its mean interval is compared with that of the "
         "image that is repeated most often on the same carousel."},
        {finding_code::fec_not_sent, "fec-not-sent", severity::warning,
         "forward error correction signalled and not sent",
         "A receiver that finds packets damaged waits for parity that never comes, and loses them later than "
         "it need.",
         "Send the FEC packets, or take the sub-channel out of FIG 0/14.",
         "FIG 0/14 says scheme 1 for the sub-channel, and no set of FEC packets (EN 300 401, 5.3.5) was "
         "found in "
         "the recording."},
        {finding_code::object_compressed, "object-compressed", severity::warning,
         "objects that many receivers pass over",
         "A receiver that does not unpack bodies drops an object whose header says that it is compressed.",
         "Send objects uncompressed; images gain nothing by it.",
         "The MOT parameter CompressionType obliges a decoder to unpack the body or to drop it, and dropping "
         "is "
         "what many do. Here such bodies are unpacked, so the other findings speak of a receiver that can."},
        {finding_code::names_in_two, "names-in-two", severity::warning, "one content name on two carousels",
         "Each data service keeps objects of its own: what one carousel announces does not find its image on "
         "the "
         "other.",
         "Keep announcements and images on one carousel, and names apart.",
         "Objects under the same name on two SPI components of the ensemble. A receiver that follows both "
         "reads "
         "everything twice; one that follows the first it finds may see the older one."},
        {finding_code::name_case_differs, "name-case-differs", severity::error,
         "a name that differs by case or character set",
         "Names are compared byte for byte, so an image whose name differs from the announced one in the "
         "case "
         "of a letter or in its coding is never found.",
         "Write the content name exactly as the url in the service information, in UTF-8.",
         "The image came under a name that becomes an announced one when upper and lower case are taken as "
         "the "
         "same, or when the name is read in the other character set. Often a web server forgave what a "
         "receiver does not."},
        {finding_code::clock_missing, "clock-missing", severity::error, "the multiplex sends no clock",
         "Without date and time a receiver knows no day, and drops every programme.",
         "Send FIG 0/10, and FIG 0/9 with the local time offset.",
         "Both are needed: FIG 0/10 has UTC, and FIG 0/9 the offset of local time. Nothing is said of "
         "recordings of a few seconds, in which neither may have come."},
        {finding_code::clock_day_off, "clock-day-off", severity::error,
         "the clock is a day off from the schedules",
         "Programmes of other days than the clock's are not shown as now and next, whatever is right about "
         "them.",
         "Set the multiplexer's clock, with the local time offset; or look which day the schedules are made "
         "for.",
         "No programme is for a day on which the clock was, and all lie within one day of it. A wrong date "
         "in FIG "
         "0/10, a wrong local time offset around midnight, or a carousel of yesterday or tomorrow look so."},
    };
    return entries;
}

}  // namespace dabspi::check
