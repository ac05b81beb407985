// Station logos: logo announcements in service information, and the images that come for them.

#include "tools/check/catalogue_entries.h"

namespace dabspi::check {

const std::vector<catalogue_entry>& logo_entries() {
    static const std::vector<catalogue_entry> entries = {
        {finding_code::logo_no_station, "logo-no-station", severity::error, "logos of a station of zeros",
         "A logo takes the service's identifier as known when it is reached; where the bearers stand "
         "behind the media, that is zero, and nothing is written.",
         "Put the service's bearers in front of its media descriptions.",
         "A receiver reads a service once, from front to back. A logo of service 0 is announced, its "
         "image is consumed when it comes, and no file is made. A service without any bearer of the DAB "
         "domain ends in the same way."},
        {finding_code::logo_32_bit, "logo-32-bit", severity::warning, "a logo of a service with 32 bits",
         "Logos are written for 16-bit service identifiers (programme services) only.",
         "Announce logos for programme services; leave data services without.",
         "A service identifier of 32 bits gives a file name without ECC and SCIdS, and is then refused."},
        {finding_code::logo_jpeg, "logo-jpeg", severity::warning, "a JPEG logo",
         "Only PNG images are written; JPEG logos are announced and dropped.",
         "Send a PNG of 128x128 or 320x240 pixels as well.",
         "The logo announcement decides, not the image: MIME type image/jpeg, or without a MIME type the "
         "endings jpg, JPG and jpeg. A JPEG image under a logo announcement for PNG is written, see "
         "logo-not-png."},
        {finding_code::logo_format, "logo-format", severity::warning, "a logo of unknown format",
         "Neither the MIME type nor the ending of the content name says PNG, so the logo is never "
         "written.",
         "State the MIME type image/png, or let the content name end in .png.",
         "Endings are compared as written: png and PNG are known, Png is not. MIME types have to be "
         "exactly image/png or image/jpeg; with a parameter behind a semicolon they are unknown, and "
         "then the ending decides."},
        {finding_code::logo_size, "logo-size", severity::note, "a size that is never written",
         "Only logos of 128x128 and 320x240 pixels are written.",
         "Announce and send one of these two sizes as well, better both.",
         "32x32, 112x32 and 600x600 are known sizes and useful to other receivers; any other size, and "
         "none at all, is only carried along. Exactly these numbers count: 240x320 is another size than "
         "320x240."},
        {finding_code::logo_not_sent, "logo-not-sent", severity::warning, "announced and never sent",
         "The logo announcement waits for an image of this content name on the same data service, and none "
         "came.",
         "Send the image under the announced name, or do not announce it.",
         "Content names are compared byte for byte, with case, path and everything. The url of the "
         "multimedia element has to be the ContentName of the image, not the address of a web server, "
         "unless both are the same. In a short recording the image may simply not have been repeated yet."},
        {finding_code::logo_not_announced, "logo-not-announced", severity::warning,
         "sent and never announced",
         "An image that no service information on the same data service announces is dropped.",
         "Announce it: a multimedia element whose url is the image's content name.",
         "Logo announcements are kept under the data service that carried them. An image on another data "
         "service than its logo announcement is never matched."},
        {finding_code::logo_early, "logo-early", severity::warning, "sent before its logo announcement",
         "Images that come before the service information are dropped, not kept.",
         "Send service information first and more often than images, so that little time is lost.",
         "The image is written when the carousel brings it again, after the logo announcement. In a slow "
         "carousel that can be long: the station stays without its logo until then."},
        {finding_code::logo_subtype, "logo-subtype", severity::warning, "an image of an unused sub-type",
         "Images are taken with ContentSubType 1 (JFIF) or 3 (PNG) only.",
         "Send PNG images with ContentSubType 3.",
         "GIF (0) and BMP (2) are dropped before their names are looked at; a PNG that is sent with a "
         "wrong sub-type is lost with them. The logo announcement stays open."},
        {finding_code::logo_too_large, "logo-too-large", severity::error, "a logo that is too large",
         "Images of more than 22,528 bytes are not written, and use up their logo announcement.",
         "Compress the image to 22,528 bytes or less.",
         "The logo announcement is consumed all the same, and what stands in the logo directory for this "
         "station and size stays as it was. A palette of 256 colours makes most logos small enough."},
        {finding_code::logo_larger_there, "logo-larger-there", severity::note,
         "a larger logo is there already",
         "A logo of 128x128 is not written once one of 320x240 of the same station is on disk.",
         "Nothing needs to be done; to have both, send the smaller one first.",
         "The smaller one would be superfluous. The logo announcement is consumed; the other way round both "
         "are written."},
        {finding_code::logo_twice, "logo-twice", severity::note, "written more than once",
         "Logo announcements add up: an image is written and reported once for each logo announcement that "
         "waits for "
         "it.",
         "Announce each image once for each station, and do not change service information without need.",
         "Each new version of a service information object, and each other name for it, announces all "
         "its logos again. What comes next is then written as many times. Nothing is lost, but the host "
         "is notified more than once."},
        {finding_code::logo_not_png, "logo-not-png", severity::error, "announced as PNG, and it is none",
         "The announced format decides; whatever comes is written as a .PNG file, and the display cannot "
         "show it.",
         "Send a valid PNG under a logo announcement for PNG.",
         "The receiver does not look into images. A JPEG, an error page of a web server or a PNG that "
         "was cut off ends up in a file named .PNG. The image was decoded here as a whole to tell."},
        {finding_code::logo_other_size, "logo-other-size", severity::warning, "not of the announced size",
         "The announced size decides about file and use; the image itself has other dimensions.",
         "Announce the size that the image has.",
         "The display scales or cuts what it finds in the file for 128x128 or 320x240. An image of one "
         "size announced as another is a copy and paste mistake more often than not."},
        {finding_code::logo_change_lost, "logo-change-lost", severity::warning,
         "a changed logo that is not written",
         "A logo announcement serves one image; a changed image under the same name is ignored until it is "
         "announced anew.",
         "Give a changed logo a new content name, and announce it.",
         "The first image that matches uses the logo announcement up. Repetitions in the carousel are "
         "therefore ignored, and so is a new picture under the old name, until service information is "
         "read again: when its size changes or the day does."},
    };
    return entries;
}

}  // namespace dabspi::check
