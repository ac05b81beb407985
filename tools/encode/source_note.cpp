#include "tools/encode/source_note.h"

#include "tools/text/utf8.h"

namespace dabspi {

std::string note_text(const std::string& file, const source_note& note) {
    std::string text = file;
    if (note.line != 0) text += ":" + std::to_string(note.line) + ":" + std::to_string(note.column);
    if (!note.where.empty()) text += ": " + note.where;
    text += ": " + note.text;
    if (!note.remedy.empty()) text += "; " + note.remedy;
    return printable(text);
}

}  // namespace dabspi
