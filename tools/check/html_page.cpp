#include "tools/check/html_page.h"

#include <cstring>

#include "tools/check/html_text.h"
#include "tools/check/png_check.h"
#include "tools/inspect/image_header.h"
#include "tools/text/base64.h"
#include "tools/text/sha256.h"

namespace dabspi::check::html {

namespace {

constexpr std::uint64_t kMostPixels = 16'000'000;  // of an image that is shown

std::string policy(const std::string& script) {
    std::string text =
        "default-src 'none'; img-src data:; style-src 'unsafe-inline'; base-uri 'none'; form-action 'none'";
    if (!script.empty()) {
        const auto hash = sha256(script);
        text += "; script-src 'sha256-" + encode_base64({hash.begin(), hash.end()}) + "'";
    }
    return text;
}

// A browser is given what is an image of a kind that every browser knows, and nothing else.
const char* mime_of(const bytes& body) {
    const auto header = read_image_header(body);
    if (!header) return nullptr;
    if (std::strcmp(header->kind, "PNG") == 0) return check_png(body).good ? "image/png" : nullptr;
    // Unpacked, a small file may fill the reader's memory.
    const std::uint64_t pixels = std::uint64_t{header->width} * header->height;
    return std::strcmp(header->kind, "JPEG") == 0 && pixels != 0 && pixels <= kMostPixels ? "image/jpeg"
                                                                                          : nullptr;
}

}  // namespace

const char* const kBaseStyle = R"(
:root {
  --ground: #fbfaf8; --sheet: #ffffff; --text: #1d1f23; --faint: #5a5f69; --rule: #d8d9dd;
  --cell: #e3ebf6; --cell-edge: #8aa4c8; --cell-text: #16263d; --now: #1d4f91; --now-text: #ffffff; --reported: #1d4f91;
  --error: #a3161c; --warning: #7c4a00; --note: #3b5570; --link: #0b5394; --focus: #c2410c;
  --error-tint: #fbe4e3; --warning-tint: #fcefd6; --note-tint: #e6edf3; --hatch: #cfd0d6; --plate: #ffffff;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ground: #14161a; --sheet: #1c1f25; --text: #e8e8ea; --faint: #a7acb6; --rule: #3a3e47;
    --cell: #25344a; --cell-edge: #5b7aa6; --cell-text: #e2ebf8; --now: #9cc2f5; --now-text: #0c1a2c; --reported: #9cc2f5;
    --error: #ff9d98; --warning: #f0bf6b; --note: #a9c4de; --link: #8dbcf2; --focus: #ffb27a;
    --error-tint: #46201f; --warning-tint: #40300f; --note-tint: #233241; --hatch: #4a4e58; --plate: #e9e9ec;
  }
}
* { box-sizing: border-box; }
html { scroll-padding-top: 1rem; }
body { margin: 0 auto; padding: 0 clamp(.75rem, 3vw, 2.5rem) 4rem; max-width: 100rem; background: var(--ground);
  color: var(--text); font: 1rem/1.5 system-ui, "DejaVu Sans", sans-serif; }
h1, h2, h3, h4 { line-height: 1.25; overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; margin: 1.5rem 0 .25rem; }
h2 { font-size: 1.25rem; margin: 2.5rem 0 .75rem; padding-bottom: .25rem; border-bottom: 1px solid var(--rule); }
h3 { font-size: 1.05rem; margin: 0 0 .4rem; }
header p { margin: .15rem 0; color: var(--faint); }
code { font: .9em ui-monospace, "DejaVu Sans Mono", monospace; }
small, .line, .count { color: var(--faint); font-size: .85rem; }
a { color: var(--link); overflow-wrap: anywhere; }
:focus-visible { outline: 3px solid var(--focus); outline-offset: 2px; }
:target { outline: 3px solid var(--focus); outline-offset: 1px; }
section:target { outline: none; }
.skip { position: absolute; left: -100vw; }
.skip:focus { left: 1rem; top: .5rem; z-index: 9; background: var(--sheet); padding: .5rem 1rem; }
.unseen { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); white-space: nowrap; }
summary { cursor: pointer; }
)";

std::string page_around(const std::string& title, const char* style, const std::string& body,
                        const std::string& script) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
           policy(script) +
           "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
           escaped(title) + "</title>\n<style>\n" + kBaseStyle + style + "</style>\n</head>\n<body>\n" +
           body + (script.empty() ? "" : "<script>" + script + "</script>\n") + "</body>\n</html>\n";
}

std::string image_uri(const bytes& body) {
    const char* const mime = mime_of(body);
    return mime == nullptr ? std::string() : data_uri(mime, body);
}

}  // namespace dabspi::check::html
