// Small recordings: announced logos and the images that arrive for them.
#include "examples/generator/image_files.h"
#include "examples/generator/scene.h"
#include "examples/generator/stations.h"

namespace generator {

using namespace spi_builder;

namespace {

constexpr const char* png = "image/png";
constexpr const char* jpeg = "image/jpeg";

// The service's own picture of width x height, under the content name `name`.
void feed_picture(scene& s, file_set& files, const service_id& id, const std::string& name, int width,
                  int height) {
    const station& from = station_of(id);
    s.png(name, picture_name(from, width, height), png_file(draw_logo(from.logo, width, height)), files);
}

void image_before_announcement(file_set& files) {
    scene s("image-before-announcement",
            "An image is kept only if the service information has announced it: one that comes before is "
            "lost, and\n"
            "the announcement does not bring it back. Each announcement serves one image.");
    s.note("Not announced yet.");
    feed_picture(s, files, quillhaven(), "q1.png", 128, 128);
    s.si("si", service_with(quillhaven(), "Quillhaven One", {logo(png, "q1.png", 128, 128)}));
    s.note("Announced: written. Once more: passed over.");
    feed_picture(s, files, quillhaven(), "q1.png", 128, 128);
    feed_picture(s, files, quillhaven(), "q1.png", 128, 128);
    s.save(files);
}

void small_after_large(file_set& files) {
    scene s("small-logo-after-large-logo",
            "Once a station's 320 x 240 logo is on disk, its 128 x 128 logo is superfluous and not written. "
            "The other\n"
            "way round both are.");
    s.si("si-1a01", service_with(quillhaven(), "Quillhaven One",
                                 {logo(png, "q1-small.png", 128, 128), logo(png, "q1-large.png", 320, 240)}));
    s.si("si-1a02", service_with(fennmark(), "Fennmark FM",
                                 {logo(png, "fm-small.png", 128, 128), logo(png, "fm-large.png", 320, 240)}));
    s.note("Quillhaven: large, then small (skipped, and its announcement is used up).");
    feed_picture(s, files, quillhaven(), "q1-large.png", 320, 240);
    feed_picture(s, files, quillhaven(), "q1-small.png", 128, 128);
    s.note("Fennmark: small, then large.");
    feed_picture(s, files, fennmark(), "fm-small.png", 128, 128);
    feed_picture(s, files, fennmark(), "fm-large.png", 320, 240);
    s.save(files);
}

void announced_twice(file_set& files) {
    scene s("announced-twice-written-twice",
            "Announcements add up: the same description under two content names announces its logo twice, "
            "and one\n"
            "image is then written and reported twice.");
    const bytes description = service_with(quillhaven(), "Quillhaven One", {logo(png, "q1.png", 128, 128)});
    s.si("si-a", description);
    s.note("Repetitions of the same object add nothing.");
    s.si("si-a", description);
    s.si("si-b", description);
    feed_picture(s, files, quillhaven(), "q1.png", 128, 128);
    s.note("Both announcements are used up.");
    feed_picture(s, files, quillhaven(), "q1.png", 128, 128);
    s.save(files);
}

void too_large(file_set& files) {
    scene s("logo-too-large",
            "A logo of more than 22528 bytes is not written; its announcement is used up all the same, so a "
            "smaller\n"
            "file under the same name helps only after the next announcement.");
    const bytes description = service_with(quillhaven(), "Quillhaven One", {logo(png, "q1.png", 320, 240)});
    s.si("si-a", description);
    s.png("q1.png", "oversize-320x240.png", oversize_png(), files);
    feed_picture(s, files, quillhaven(), "q1.png", 320, 240);
    s.note("Announced again, by an object with another content name.");
    s.si("si-b", description);
    feed_picture(s, files, quillhaven(), "q1.png", 320, 240);
    s.save(files);
}

void jpeg_never_written(file_set& files) {
    scene s(
        "jpeg-is-never-written",
        "Logos that are announced as JPEG are never written, whatever their size and whatever the image is.\n"
        "The format is known from the MIME type, or else from the ending of the name.");
    logo_data by_ending = logo("", "q1-ending.jpg", 320, 240);
    s.si("si", service_with(quillhaven(), "Quillhaven One",
                            {logo(jpeg, "q1-small.jpg", 128, 128), logo(jpeg, "q1-large.jpg", 320, 240),
                             logo(jpeg, "q1.png", 128, 128), by_ending}));
    const station& from = station_of(quillhaven());
    const bytes small = jfif_file(draw_logo(from.logo, 16, 16));
    const bytes large = jfif_file(draw_logo(from.logo, 40, 30));
    s.jfif("q1-small.jpg", "quillhaven-128x128.jpg", small, files);
    s.jfif("q1-large.jpg", "quillhaven-320x240.jpg", large, files);
    s.jfif("q1-ending.jpg", "quillhaven-320x240.jpg", large, files);
    s.note("A PNG image under a name that ends in .png: the MIME type of the announcement said JPEG.");
    feed_picture(s, files, quillhaven(), "q1.png", 128, 128);
    s.save(files);
}

void announced_format_counts(file_set& files) {
    scene s("announced-format-counts",
            "The announced format alone decides, not the image: a JFIF body under a PNG announcement is "
            "written with\n"
            "the announced ending. Bodies that are neither JFIF nor PNG are no logos and use nothing up.");
    s.si("si", service_with(quillhaven(), "Quillhaven One", {logo(png, "q1.png", 128, 128)}));
    const bytes image = jfif_file(draw_logo(station_of(quillhaven()).logo, 16, 16));
    s.note("As GIF, then as BMP, by the header of the object.");
    s.image_of_subtype(0, "q1.png", "quillhaven-128x128.jpg", image, files);
    s.image_of_subtype(2, "q1.png", "quillhaven-128x128.jpg", image, files);
    s.note("As JFIF.");
    s.jfif("q1.png", "quillhaven-128x128.jpg", image, files);
    s.save(files);
}

void only_two_sizes(file_set& files) {
    scene s("only-two-sizes-are-written",
            "Of all announced sizes only 128 x 128 and 320 x 240 are written, and only for stations with a "
            "16-bit\n"
            "service identifier.");
    logo_data square;
    square.mime = png;
    square.url = "q1-square.png";
    square.type = logo_colour_square;
    logo_data rectangle = square;
    rectangle.url = "q1-rectangle.png";
    rectangle.type = logo_colour_rectangle;
    logo_data no_size = square;
    no_size.url = "q1-no-size.png";
    no_size.type = logo_unrestricted;
    logo_data width_only = no_size;
    width_only.url = "q1-width.png";
    width_only.width = 128;
    s.si("si", service_with(
                   quillhaven(), "Quillhaven One",
                   {square, rectangle, no_size, logo(png, "q1-600.png", 600, 600),
                    logo(png, "q1-upright.png", 240, 320), width_only, logo(png, "q1-320.png", 320, 240)}));
    const service_id wide = {ecc, home_ensemble, 0xE0110042};
    s.si("si-data", service_with(wide, "Signpost Data", {logo(png, "data.png", 128, 128)}));
    s.note("32 x 32, 112 x 32, no size, 600 x 600, 240 x 320: none of them.");
    feed_picture(s, files, quillhaven(), "q1-square.png", 32, 32);
    feed_picture(s, files, quillhaven(), "q1-rectangle.png", 112, 32);
    feed_picture(s, files, quillhaven(), "q1-no-size.png", 128, 128);
    feed_picture(s, files, quillhaven(), "q1-600.png", 600, 600);
    feed_picture(s, files, quillhaven(), "q1-upright.png", 240, 320);
    s.note("A width alone counts as a square: 128 x 128. Then 320 x 240.");
    feed_picture(s, files, quillhaven(), "q1-width.png", 128, 128);
    feed_picture(s, files, quillhaven(), "q1-320.png", 320, 240);
    s.note("A data service's logo.");
    feed_picture(s, files, quillhaven(), "data.png", 128, 128);
    s.save(files);
}

}  // namespace

void add_logo_scenes(file_set& files) {
    image_before_announcement(files);
    small_after_large(files);
    announced_twice(files);
    too_large(files);
    jpeg_never_written(files);
    announced_format_counts(files);
    only_two_sizes(files);
}

}  // namespace generator
