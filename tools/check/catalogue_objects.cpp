// Objects as such: their coding, their texts, their MOT parameters.

#include "tools/check/catalogue_entries.h"

namespace dabspi::check {

const std::vector<catalogue_entry>& object_entries() {
    static const std::vector<catalogue_entry> entries = {
        {finding_code::malformed, "malformed", severity::error, "malformed bytes",
         "The object is not coded as ETSI TS 102 371 lays it down, and every receiver makes something "
         "else of it.",
         "Repair the encoder; \"dabspi inspect\" shows the place in the object's tree.",
         "Nothing reports a malformed object on air. This receiver reads what is missing as all ones, "
         "passes over what it does not know, cuts nothing off and goes on; so a single wrong length can "
         "turn the rest of an object into other elements, or into none.\n"
         "\n"
         "\"dabspi inspect OBJECT\" (or \"dabspi inspect --line N RECORDING\") shows the object as a "
         "tree, with what is malformed at its place and how the receiver takes it. Several places in one "
         "object are counted together here; the first one is named."},
        {finding_code::malformed_unread, "malformed-unread", severity::warning,
         "malformed where it is passed over",
         "The object is not coded as ETSI TS 102 371 lays it down, in a part that receivers of this kind "
         "pass over.",
         "Repair the encoder all the same: other receivers read these parts.",
         "Names, times, bearers and logos are read; genres, descriptions, links and memberships are not. "
         "What is wrong there does no harm here, and may do so elsewhere. Genres written as text, the "
         "URN of the XML document instead of its binary form, are the usual case."},
        {finding_code::misread, "misread", severity::warning, "well formed, and read otherwise",
         "The coding is allowed, but receivers of this kind read it otherwise than it is meant.",
         "Code it in the usual form: see the text of the finding.",
         "Three things are known: a length or a number of three bytes within the last three bytes of an "
         "object (the receiver wants a fourth byte behind them), the tag 0x7F (which it takes for \"no "
         "tag\"), and times that leave their day by more than a day or have seconds of 63. Receivers in "
         "the field behave so; they are not going to change."},
        {finding_code::subtype_differs, "subtype-differs", severity::error,
         "ContentSubType and content differ",
         "A receiver goes by the ContentSubType of the MOT header alone, and finds nothing in an object "
         "of the other kind.",
         "Send service information with ContentSubType 0, programme information with 1.",
         "The receiver does not look at the first element to learn what an object is: ContentSubType 0 "
         "is read as service information, 1 as programme information. An epg element in an object of "
         "sub-type 0 is passed over as an unknown element, without a message."},
        {finding_code::subtype_blocks, "subtype-blocks", severity::error,
         "a sub-type that blocks a later object",
         "An object is remembered by content name and size before its sub-type is looked at, so a later "
         "one of the same name and size counts as already read.",
         "Give objects of different sub-types different content names.",
         "Objects of other sub-types (2, group information, and all above) are not read, but their names "
         "and sizes are remembered like those of all objects. An object of sub-type 0 or 1 that has the "
         "same data service, content name and size is then passed over until the day changes or the "
         "receiver changes its ensemble."},
        {finding_code::subtype_not_read, "subtype-not-read", severity::note, "a sub-type that is not read",
         "Receivers of this kind read service information and programme information, nothing else.",
         "Nothing needs to be done; do not expect anything of such objects here.",
         "Group information (ContentSubType 2) and unknown sub-types are passed over. Names of series "
         "that stand in group information alone are not shown."},
        {finding_code::content_type, "content-type", severity::note, "a content type that is not used",
         "A receiver uses MOT ContentType 7 (SPI objects) and 2 (images), and drops all others.",
         "Check the ContentType, or leave these objects out of the SPI data service.",
         "ContentType 7 goes to the parser, ContentType 2 to the logo store; everything else is dropped "
         "before anybody looks at it."},
        {finding_code::changed_same_size, "changed-same-size", severity::error,
         "changed without changing its size",
         "A receiver takes an object for already read when name and size are the same; the new content "
         "is not read before the day changes.",
         "Change the content name, or the size (one byte is enough), with each new version.",
         "Receivers do not compare contents, and they do not look at versions or UniqueBodyVersion: data "
         "service, content name and size in bytes are all that tells a new object from a repetition. A "
         "corrected title of equal length therefore stays unknown until the day field of the clock "
         "changes or the ensemble is left."},
        {finding_code::content_name_long, "content-name-long", severity::warning, "a long content name",
         "More than 126 bytes do not fit the short form of the MOT header parameter, which holds 127 "
         "with the byte for the character set.",
         "Use short names, such as w20260310dE1C221.EHB.",
         "The MOT parameter ContentName (ETSI EN 301 234) states its length in seven bits, or in fifteen "
         "with the extension flag. Broadcasts use the short form; data decoders that expect it cut "
         "longer names or lose the object, and a logo whose name was cut matches no logo announcement. Web "
         "addresses used as content names are how this happens."},
        {finding_code::not_utf8, "not-utf8", severity::warning, "text that is not UTF-8",
         "Texts are passed on byte for byte; what a display makes of bytes that are not UTF-8 is left to "
         "chance.",
         "Code texts in UTF-8.",
         "The usual cause is a text in ISO 8859-1 or in the EBU Latin set that was written as it was. "
         "The receiver converts nothing and checks nothing. Where the ill-formed bytes are among the "
         "sixteen that stand for tokens (0x01 to 0x13), parts of the text vanish as well."},
        {finding_code::control_character, "control-character", severity::warning,
         "a control character in a text", "Control characters reach the display as they are.",
         "Leave them out; tab and line ends alone are allowed.",
         "Control codes of DAB labels (0x1F, a preferred line break, and 0x0B, the end of a headline) "
         "come from texts made for Dynamic Label. In SPI 0x0B is a token and vanishes, and the others "
         "end up on the screen as boxes."},
        {finding_code::token_undefined, "token-undefined", severity::warning, "a token that is not defined",
         "A byte that stands for a token without a text is dropped, and that part of the text is missing.",
         "Define the token in the object's token table, or write the text out.",
         "Sixteen byte values (0x01 to 0x08, 0x0B, 0x0C, 0x0E to 0x13) stand for texts of the object's "
         "own token table. A table holds for its own object only. An encoder that knows no tokens must "
         "not let such bytes into a text: they are control characters that came along with it."},
        {finding_code::token_after_use, "token-after-use", severity::error, "a token used before its table",
         "A receiver reads an object once, from front to back; a token that is used before its table is "
         "dropped.",
         "Put the token table first, directly behind the top element's tag and length.",
         "ETSI TS 102 371 puts the token table in front. The receiver takes it wherever it stands and "
         "applies it to all texts behind it; texts before it lose their tokens."},
        {finding_code::token_twice, "token-twice", severity::warning, "a token that is defined twice",
         "The first text of a token holds; the second one is passed over.", "Define each token once.",
         "A table that is built by appending, or an object joined from two, defines tokens twice. Texts "
         "that were coded with the second meaning are shown with the first one."},
        {finding_code::token_too_long, "token-too-long", severity::error, "a token of 256 bytes or more",
         "Token texts of more than 255 bytes define nothing, and every use of the token vanishes.",
         "Keep token texts at 255 bytes or less.",
         "Receivers count the bytes of a token text in eight bits. A longer text is passed over as a "
         "whole; the token counts as not defined."},
        {finding_code::text_as_id, "text-as-id", severity::error, "a web address where a content ID belongs",
         "The letters of the address are read as ensemble and service, which gives a ghost service that "
         "nobody can tune to.",
         "Code bearers of the DAB domain only; leave fm:, http: and other bearers out of the binary "
         "object.",
         "XML documents list bearers of all kinds (dab:, fm:, http:). Only the DAB ones have a binary "
         "form; the attribute \"id\" holds flags, ECC, EId and SId, never a text. An encoder that writes "
         "the text makes \"http://...\" a service with the ECC 0x74 on ensemble 0x7470. In a service, "
         "where the last bearer counts, the ghost replaces the station, and the station's logos get the "
         "ghost's name."},
        {finding_code::no_ensemble_flag, "no-ensemble-flag", severity::error,
         "ensemble left out of a content ID",
         "A receiver always expects ECC and EId behind the flags; without them it reads the service "
         "identifier as ECC and ensemble.",
         "Set the ensemble flag (0x40) and code ECC and EId, as newer editions ask.",
         "The edition of 2008 allowed to leave ECC and EId out for the ensemble that carries the object. "
         "The flag is not tested by receivers of this kind: they read on, take parts of the SId for the "
         "ECC and the EId, and run out of bytes for the SId, which reads as 0xFFFF."},
        {finding_code::negative_offset, "negative-offset", severity::error, "negative local time offset",
         "The sign bit is counted as part of the value, so a negative offset comes out one half-hour too "
         "large.",
         "West of Greenwich nothing helps in the object itself; coding UTC without an offset shows UTC.",
         "The offset is read as the whole byte modulo 31, and the sign bit has the value 32, one more "
         "than 31: -01:00 (0x22) reads as -01:30. Every time that carries a negative offset is shown "
         "half an hour early, and start times before 00:30 move to the day before. Receivers in the "
         "field do so, and it is kept for their sake."},
    };
    return entries;
}

}  // namespace dabspi::check
