// What morvane-lint looks for: one row a check.
#ifndef MORVANE_LINT_CHECK_TABLE_H
#define MORVANE_LINT_CHECK_TABLE_H

#include <array>
#include <cstddef>
#include <string_view>

#include "report/report.h"

namespace morvane {

// Identifier, severity, what is wrong, and what --explain adds: what comes of it and what to write
// instead. The rows are in groups: reading, names, sense, archives, messages, needs, suppressions.
inline constexpr auto CHECKS = std::to_array<report_rule>({
    // Reading a description.
    {"description-unreadable", severity::ERROR, "A description cannot be read.",
     "The program leaves the product out of its list. A description is a plain file of at most one "
     "mebibyte that everyone may read."},
    {"keyword-unknown", severity::ERROR, "A line begins with a word that is no keyword.",
     "The program reports it and skips the line, so that what it says is lost. Capitals count: "
     "'name' is not 'Name'. The keywords are those of the message file, numbers 200 to 233."},
    {"keyword-none", severity::ERROR, "A line begins with something else than a keyword.",
     "The program reports an empty keyword and skips the line. An entry is a keyword, an equals "
     "sign and a value on one line; a comment begins with '#'."},
    {"keyword-misplaced", severity::ERROR, "An entry stands where nothing is open that it fits.",
     "The program reports it and leaves it out. Target opens a part, NeedsCategory a needed "
     "product of that part, NeedsType a type of that: each entry stands behind what it belongs "
     "to."},
    {"keyword-disabled", severity::ERROR, "FixedOwners or FixedGroups behind a DescriptionState.",
     "With a DescriptionState other than 0 the program takes both for unknown keywords from there "
     "on. Remove the DescriptionState, or the list."},
    {"equals-missing", severity::ERROR, "A keyword without its equals sign.",
     "The program takes the value for empty and reads the rest of the line as another entry. Write "
     "KEYWORD = VALUE on one line."},
    {"text-unquoted", severity::ERROR, "A value of several words without quotes.",
     "The program takes the first word for the value and reads the rest of the line as another "
     "entry. Put the whole value between double quotes; a comment begins with '#'."},
    {"text-behind-quote", severity::WARNING, "Text behind the closing quote of a value.",
     "The program ignores it. A value ends at its second quote and cannot hold one; use single "
     "quotes within it. A comment begins with '#'."},
    {"quote-missing", severity::ERROR, "The closing quote of a value is missing.",
     "The program takes the rest of the line for the value, a comment there included. End the "
     "value with a double quote on the same line."},
    {"tool-name", severity::ERROR, "A needed tool that is no name of a command.",
     "NeededTools are looked for by their names in each directory of the PATH: a path or an option "
     "is never found. Write names of commands alone."},
    {"value-too-long", severity::ERROR, "A value is longer than the program reads.",
     "A value has at most 1024 bytes, in quotes 1022 with what follows them. What is beyond is "
     "cut, "
     "and in quotes read as further entries. Write several entries where a text has several "
     "lines."},
    {"value-cut", severity::WARNING, "A value is longer than its field.",
     "The program cuts it without a word: at 49 bytes for Name, Category, Type, users and groups, "
     "at 79 for FullName, NeedsText and Target, at 127 for paths and PathVariable. Shorten it."},
    {"value-empty", severity::WARNING, "A keyword without a value.",
     "Target, NeedsCategory and NeedsType open nothing without a value; other entries set their "
     "field to nothing, which is not always the same as no entry. Give a value, or remove the "
     "line."},
    {"list-too-long", severity::WARNING, "A list holds more than the program keeps.",
     "What is beyond is left out without a word: 19 files, 19 patch levels, 10 users or groups. "
     "Shorten the list."},
    {"list-separator", severity::ERROR, "A list is separated by something else than blanks.",
     "The program splits lists at blanks alone, so that 'a,b' is one word and of '0,1' only the "
     "first level counts. Write \"a b\", without a blank before the first."},
    {"list-repeated", severity::ERROR, "A list is given twice.",
     "Lists do not add up: of NeededTools the last tool of the first list and the first of the "
     "second become one word, of the others a shorter second list keeps the end of the first. "
     "Write one list."},
    {"entry-repeated", severity::WARNING, "An entry is given twice.",
     "The later one counts. Remove one of them."},
    {"comment-too-long", severity::ERROR, "A comment is longer than the program skips.",
     "The program skips 255 bytes behind the '#' and reads the rest as entries. Break the comment "
     "into lines."},
    {"number-none", severity::ERROR, "A number is expected, and the value is none.",
     "The program reads the digits at the start of the value and takes 0 where there are none: "
     "'yes' is 0. Write digits alone."},
    {"version-none", severity::ERROR, "A version is expected, and the value is none.",
     "A version is up to three numbers with full stops between them. A piece without digits at its "
     "start counts as 0: 'v2.1' is 0.1. Write digits and full stops alone."},
    {"version-rest", severity::WARNING, "A part of a version is ignored.",
     "Of each piece only the digits at its start count, and only three pieces: '2,10' is 2.0 and "
     "'1.2.3.4' is 1.2.3. Products that differ in the rest are the same version to the program. "
     "Patch gives a fourth number."},
    {"parts-too-many", severity::ERROR, "A product has more than 12 parts.",
     "The program keeps twelve: the thirteenth is left out without a word, and its entries are "
     "reported. Join parts."},
    {"needs-too-many", severity::ERROR, "A part has more than 10 needed products.",
     "The program keeps ten: further ones are left out without a word, and their entries are "
     "reported. Spread them over several parts."},
    {"types-too-many", severity::ERROR, "A needed product has more than 10 types.",
     "The program keeps ten: an eleventh is left out, and its entries are taken for the tenth."},
    {"not-ascii", severity::WARNING, "A byte that is no ASCII.",
     "The program counts the width of lines in bytes, so that lists and frames lose their shape, "
     "and a terminal may show something else. Write ASCII."},
    {"control-character", severity::ERROR, "A control character in a description.",
     "A zero byte ends the value it stands in, others go to the operator's terminal as they are. "
     "Remove it."},
    {"byte-order-mark", severity::ERROR, "The file begins with a byte order mark.",
     "The program takes it for the beginning of an entry, reports it and skips the first line; of "
     "UTF-16 it reads nothing. Save the file without the mark, as ASCII."},

    // Names that go into the makefile and the settings.
    {"name-missing", severity::WARNING, "A product without a Name.",
     "In the heading of a part nothing stands in for the name, and elsewhere the file's name does. "
     "Give every product a Name."},
    {"name-characters", severity::ERROR, "A name holds what make or the shell interprets.",
     "Name, FullName and NeedsText are written into makefiles as they stand, so that they must not "
     "hold '$', '#', '\\', a double quote or a backquote."},
    {"identifier-characters", severity::ERROR,
     "An identifier that the rules cannot be named after.",
     "An identifier is made of letters, digits and _.+- and begins with a letter, a digit or _: it "
     "names makefile rules, where nothing is quoted, and a hidden file is not listed. Rename ID.tar"
     " and ID.descr."},
    {"identifier-too-long", severity::ERROR, "An identifier has more than 49 bytes.",
     "The program cuts it, and then finds neither the archive nor the description. Rename ID.tar "
     "and ID.descr."},
    {"identifier-reserved", severity::ERROR, "An identifier that is the name of a rule.",
     "install.mk has rules 'install' and 'products' of its own, and further ones for each product, "
     "such as ID-tar: a product of the same name would take their place. Rename ID.tar and "
     "ID.descr."},
    {"identifier-made", severity::ERROR, "An identifier that make knows how to make from another.",
     "install.mk has rules without commands, for which make looks for commands of its own: with a "
     "product 'a' and another one 'a.c' it compiles the one into the other. Rename one of them."},
    {"category-characters", severity::WARNING, "A needed category that is no name of a variable.",
     "NeedsCategory becomes the beginning of variables in the settings, such as SORTER_PATH. Use "
     "letters, digits and underscores alone."},
    {"category-reserved", severity::ERROR, "A needed category takes the product's own variables.",
     "The settings of a product are PRODUCT_PATH and the like: a needed category PRODUCT replaces "
     "them, so that the product's makefile works in the wrong place. Use another category."},
    {"category-repeated", severity::WARNING, "Two parts of a product need the same category.",
     "Both write the same variables into the settings, and the later ones count for both. Let one "
     "part need it."},
    {"part-characters", severity::ERROR, "A part's name holds what make or the shell interprets.",
     "A part is a makefile target, named on make's command line without quotes. Use letters, "
     "digits and _.+- and begin with a letter, a digit or _."},
    {"part-reserved", severity::ERROR, "A part is named like a rule of the installation.",
     "install.mk names the rule of a part ID-PART, and has rules such as ID-owner already: make "
     "then mixes the two. Name the part otherwise, in install/Makefile too."},
    {"part-repeated", severity::ERROR, "A product has two parts of the same name.",
     "install.mk then has two rules of one name, of which make takes the later. A name stands "
     "once."},
    {"part-collision", severity::ERROR, "A part's rule has the name of a product's rule.",
     "The rule of part x of product a is called a-x, which is also the rule of a product a-x, and "
     "may be one of its steps. Rename the part or the product."},
    {"path-refused", severity::ERROR, "A proposed path that the program refuses.",
     "It is proposed all the same, and refused when the operator takes it. A path begins with '/' "
     "or '~' and holds no blanks and none of ' \" \\ $ ; & | < > ( ) * ? [ ] { } ! # % : = ` ^."},
    {"owner-refused", severity::ERROR, "A user or group whose name the program refuses.",
     "It holds what make or the shell interprets, so that it can never be accepted. Name a user or "
     "group of the host."},
    {"variable-name", severity::WARNING, "PathVariable is no name of a variable.",
     "A shell cannot set such a variable. Use letters, digits and underscores, without '$'."},

    // What the descriptions of a distribution say together.
    {"products-too-many", severity::ERROR, "More than 50 products.",
     "The program's table holds 50: it leaves out the last ones, and has no room for products that "
     "are installed. Split the distribution."},
    {"archive-missing", severity::WARNING, "A description without an archive.",
     "The program does not show the product. Add ID.tar beside ID.descr, or remove the "
     "description."},
    {"description-missing", severity::NOTE, "An archive without a description.",
     "The product is listed by its identifier, with version 0.0; it has no parts and gets no "
     "settings. If ID.descr is there, look at its spelling."},
    {"description-misnamed", severity::WARNING, "A file that is meant for a description.",
     "The program looks for ID.descr, with the capitals of ID.tar. Rename it."},
    {"messages-misnamed", severity::ERROR, "A file that is meant for the messages.",
     "The program reads morvane.rsc, and does not start without. Rename it."},
    {"version-missing", severity::NOTE, "A product without a version.",
     "It has version 0.0, which is shown as unknown. Give it a Version."},
    {"patch-of-itself", severity::ERROR, "A patch requires its own level.",
     "RequiredPatches lists what must be there before: the program looks for the level, and finds "
     "nothing but the patch itself. Leave it out of the list."},
    {"patch-alone", severity::NOTE, "A patch that requires no level.",
     "It is installed whatever lies in its directory. Where it holds but a part of the product, "
     "RequiredPatches says which level must be there."},
    {"patch-unmet", severity::WARNING, "A required patch level is not in the distribution.",
     "The operator can only go on where it is installed already. The other level has the same "
     "Name, FullName, Version, Category and Type, letter for letter, and the level as its Patch."},
    {"patch-first", severity::WARNING, "A patch is listed before what it builds on.",
     "Products are asked about in the order of their archives' names. A patch that comes first "
     "is asked for the directory, which then is the original's. Name the archives in their order, "
     "such as spindle-0.tar and spindle-1.tar."},
    {"patch-path", severity::WARNING, "A patch proposes another path than what it builds on.",
     "A patch is extracted over the product, in its directory. Give it the same Path."},
    {"part-never-again", severity::NOTE, "A part that is never asked about again.",
     "Without AskAgain and Ask a part is left as it is when the product is configured again. Add "
     "AskAgain if it should be made again."},
    {"product-twice", severity::ERROR, "Two products are the same.",
     "Name, version, patch level, category and type are equal: the operator cannot tell them "
     "apart, and either may be taken for the other. Remove one, or correct its version."},
    {"full-name-twice", severity::WARNING, "Two products look the same in the list.",
     "The list shows the full name, the version and the patch level, which are equal. Change a "
     "FullName."},
    {"path-twice", severity::WARNING, "Two products propose the same path.",
     "Installed into one directory, products overwrite files of the same name and are removed "
     "together. Give each its own Path; only a patch has that of another product."},
    {"file-like-rule", severity::WARNING, "A file in the distribution is named like a rule.",
     "make takes the step for done when a file has its name, and compiles a source of its name. "
     "Remove the file."},

    // Archives.
    {"archive-unreadable", severity::ERROR, "No tar archive that can be read.",
     "It is no tar archive, or damaged, or cut off: the installation fails half-way. Pack it "
     "again."},
    {"archive-ambiguous", severity::ERROR, "tar reads an archive otherwise than other programs.",
     "Names that stand in an archive twice, in the ways of different times, can be made to differ: "
     "what was looked at is then not what is extracted. Pack it again. Only GNU tar is compared."},
    {"archive-compressed", severity::ERROR, "An archive is compressed.",
     "Not every tar that install.mk meets unpacks it. Unpack it first; the name stays ID.tar."},
    {"archive-empty", severity::ERROR, "An archive holds nothing.",
     "Changing the owner of no files fails, and so does the installation. Put something in, such "
     "as install/Makefile."},
    {"archive-names", severity::ERROR, "An archive holds more names than one command can take.",
     "Owner and group are changed of all names in one command. Pack fewer files, or let a part "
     "unpack an archive within the archive."},
    {"member-name", severity::ERROR, "A file's name that is not handed on as it is.",
     "tar lists blanks, control and 8-bit characters and backslashes otherwise than they are, the "
     "shell expands *, ? and [...], and chown takes a leading - for an option: another file may be "
     "given "
     "away. Names have at most 1023 bytes, 255 between slashes. Rename the file, or let a part "
     "make "
     "it."},
    {"member-absolute", severity::ERROR, "A file's name begins with a slash.",
     "It is extracted below the product's directory, but the file of that name outside is given "
     "away and closed. Pack with: tar -cf ID.tar -C TREE ."},
    {"member-outside", severity::ERROR, "A file's name leads out of the tree.",
     "A name with '..' makes the installation fail. Pack with: tar -cf ID.tar -C TREE ."},
    {"member-kind", severity::ERROR, "Neither a file, a directory nor a link.",
     "Devices and named pipes cannot be extracted by everyone, and are given away. Let a part make "
     "them."},
    {"member-mode", severity::WARNING, "A file or directory that its owner cannot use.",
     "The superuser reads files that others cannot: for an ordinary user the installation fails. "
     "Pack files that their owner may read, and directories in which he may work."},
    {"member-set-id", severity::ERROR, "A file with set-id bits.",
     "A change of owner clears them. Let a part set them, behind its own chown and chgrp."},
    {"member-below-file", severity::ERROR, "A file lies below what is no directory.",
     "The archive holds a file or link where a directory must be, and cannot be extracted as it "
     "is. Pack it again."},
    {"member-no-directory", severity::ERROR, "A directory of the installation is none.",
     "The top of the archive and 'install' must be directories: description and settings are put "
     "there."},
    {"member-replaced", severity::ERROR, "A file that the installation puts there itself.",
     "Makefile and morvane.* at the top, and ID.descr, ID.dat and ID.make in install, are "
     "replaced. "
     "Give the file another name."},
    {"member-twice", severity::ERROR, "A name stands twice in an archive.",
     "Only two files or two directories of one name come out as the later; of links, and of two "
     "kinds, it depends on tar. Pack it again."},
    {"link-astray", severity::ERROR, "A symbolic link leads nowhere or out of the tree.",
     "Changes of owner, group and access follow links: one that leads out gives a file of the host "
     "away, one that leads nowhere makes the installation fail. Link within the tree, relative, or "
     "let a part make the link."},
    {"hard-link-astray", severity::ERROR, "A hard link to no file that stands before it.",
     "tar cannot make it. Pack the archive again."},
    {"makefile-missing", severity::ERROR, "A product has parts and its archive no makefile.",
     "Each Target is made by install/Makefile of the archive: the installation fails when a part "
     "is made. Add the makefile, or remove the parts."},
    {"makefile-misplaced", severity::ERROR, "The makefile of an archive lies elsewhere.",
     "Each Target is made by install/Makefile of the archive, with these capitals, and not below a "
     "directory around everything: pack with 'tar -C TREE .'."},
    {"makefile-blanks", severity::ERROR, "A command of the makefile begins with blanks.",
     "make reports 'missing separator' and the installation fails. Begin commands with a tab."},
    {"makefile-variable", severity::WARNING, "A variable without parentheses.",
     "make takes the first letter for its name: $PRODUCT_PATH is $(P) and 'RODUCT_PATH'. Write "
     "$(PRODUCT_PATH)."},
    {"part-without-target", severity::ERROR, "A part that no target of the makefile makes.",
     "make fails there; where the part is .PHONY, or its target has neither commands nor "
     "prerequisites, make reports success and does nothing. Add the target to install/Makefile, or "
     "correct the name."},
    {"part-is-file", severity::ERROR, "A part that is a file already.",
     "In install lies a file or directory of the part's name, and its target needs nothing: make "
     "reports success and does nothing. Add the part to .PHONY."},
    {"part-hidden", severity::NOTE, "A part that may be a target of the makefile.",
     "The makefile includes files, or names targets by patterns or variables, so that its targets "
     "are not known before make runs. See that it makes the part."},
    {"needed-file-missing", severity::WARNING, "A needed file is in no product that could have it.",
     "NeedsFiles are looked for in an installed supplier: the products of the category and type in "
     "this distribution neither hold the file nor have parts that could make it, so that they are "
     "refused once they are installed. Correct the name, relative to the supplier's directory."},
    {"files-shared", severity::WARNING, "Two products put the same file into one directory.",
     "They propose the same path, and what is installed later replaces the file of the other; no "
     "copy is kept. Give them paths of their own, or rename the file."},

    // Message files.
    {"message-none", severity::ERROR, "A message file without messages.",
     "Each message is a line of three digits, a blank and the text. A file in UTF-16 holds none."},
    {"message-line-end", severity::ERROR, "The lines end in carriage returns.",
     "They become parts of the texts, of keywords and commands too, so that nothing is found. Save "
     "the file with the line ends of Unix."},
    {"message-skipped", severity::WARNING, "A line that is neither message nor comment.",
     "It is skipped: a text of several lines stands in one, with \\n where it breaks. Comments "
     "begin with '#'."},
    {"message-missing", severity::ERROR, "A message is missing.",
     "'No resource #12!' is printed, compared, or run as a command in its place. Each number of "
     "the "
     "message file that comes with the program needs a line."},
    {"message-unused", severity::NOTE, "A message that the program does not use.",
     "It is read and never shown. If the number is a mistake, another message is missing."},
    {"message-repeated", severity::WARNING, "A number stands twice.",
     "The later line counts. Remove one of them."},
    {"message-column", severity::ERROR, "A line that is read as a message by mistake.",
     "A line that begins with a number is a message, whose text begins in the fifth column: '3 "
     "products' is message 3. Write three digits and a blank; begin comments with '#'."},
    {"message-cut", severity::ERROR, "A line has more than 154 bytes.",
     "It is cut there, before escapes are resolved. Shorten the text."},
    {"message-too-long", severity::ERROR, "A text has more than 149 bytes.",
     "Its end lies in the place of the next number: that message is emptied, or shown behind this "
     "one. Shorten the text."},
    {"message-not-ascii", severity::WARNING, "A byte in a message file that is no ASCII.",
     "Widths are counted in bytes, so that lines and the title box lose their shape. Write ASCII."},
    {"message-conversions", severity::ERROR, "A format with another number of conversions.",
     "Each '%s' takes the next text: with too few a text is left out, with too many a place stays "
     "empty. A percent sign is written '%%' in a format."},
    {"message-width", severity::WARNING, "A message has a line wider than the ruler.",
     "The ruler, message 010, is the width of the screen, and the terminal breaks the line where "
     "it likes. Put \\n into the text."},
    {"message-title", severity::ERROR, "A title line that does not fit the box.",
     "The title lines 011 and 019 are as wide as the ruler and begin and end with the frames 008 "
     "and 009. Otherwise the box is crooked."},
    {"message-letters", severity::ERROR, "The answers are not three different letters.",
     "Message 001 holds the letters for yes, no and quit, one byte each: of equal ones the first "
     "counts, so that an operator cannot say no, or not quit."},
    {"message-hint", severity::WARNING, "The hint behind questions does not name the answers.",
     "Message 035 tells what to type: the three letters of message 001, each as a word."},
    {"message-keyword", severity::ERROR, "A keyword that no entry can have.",
     "Keywords consist of letters and underscores and differ from each other: of equal ones the "
     "first counts, and others are never found."},
    {"message-number", severity::ERROR, "A message that must be a number is none.",
     "Messages 065 and 069 are as many characters as are compared. Write digits alone."},
    {"message-line", severity::ERROR, "A comment of the files written has several lines.",
     "Messages 141 to 143 are put behind a '#' into settings files and install.mk: what is behind "
     "\\n is read as a part of the makefile. Write one line."},
    {"message-type", severity::WARNING, "A text in the place of a type is too long.",
     "Messages 256 and 257 are cut at 49 bytes, as types are. Shorten the text."},
    {"message-command", severity::ERROR, "A command that the shell cannot read.",
     "Messages 037, 111 to 113 and 122 are run by the shell: where it cannot read them, the "
     "operator is told that rights are missing or that the host will not do. Nothing is run to "
     "find out: 'sh -n' reads the command."},
    {"message-joined", severity::WARNING, "Messages run into each other.",
     "Messages 012 to 016 are joined into one paragraph. End each with a blank, which a bar behind "
     "it keeps: ' |'."},
    {"message-height", severity::WARNING, "The selection does not fit the screen.",
     "Messages 017, 018, 024 and 029 stand above and below the list: a terminal of 24 lines shall "
     "show them with a list of eleven products. Shorten them."},
    {"message-translated", severity::ERROR, "A text that is no word of a language is translated.",
     "Names of files, commands, what hosts report, and the words that descriptions are read with "
     "are the same in every language: translated, they find nothing."},
    {"message-new-lines", severity::WARNING, "A translation begins or ends otherwise.",
     "New lines at the beginning or end keep texts apart, and are the same in every language."},
    {"message-answers", severity::NOTE, "A translation names other answers.",
     "Where the original says which letter to type, the translation says it as well, with its own "
     "letters. A word of one letter may be taken for one."},

    // Needs.
    {"need-unmet", severity::WARNING, "A needed category that no product has.",
     "Only what a host has already can meet the need: the operator is asked for a directory until "
     "one will do. Correct the category, which is compared letter for letter; or add a product; or "
     "give the directory where hosts have it with NeedsPath."},
    {"need-on-host", severity::NOTE, "A need that is expected to be met on the host.",
     "No product of the distribution meets it, but the description says where to look: NeedsPath "
     "proposes a directory, or SuppliersElsewhere allows one of another host."},
    {"need-path", severity::WARNING, "NeedsPath is where another product goes.",
     "The product that goes there is of another category than is needed, so that it does not meet "
     "the need. Correct its Category or the NeedsCategory, or give the directory where hosts have "
     "it."},
    {"need-type", severity::WARNING, "A needed type that no product of the category has.",
     "The types are compared letter for letter, and a product without a Type has none. Correct the "
     "NeedsType or the product's Type, or add a product."},
    {"need-too-old", severity::ERROR, "A product that is needed is there, and too old.",
     "It is not offered to the operator, who is asked for a directory instead, and is warned of "
     "one "
     "that is too old. A higher Version will do without the Patch. Lower NeedsVersion or "
     "NeedsPatch, or bring the product up to date."},
    {"need-alternative", severity::NOTE, "One of several needed types that no product meets.",
     "The operator can choose it, and then is asked for a directory. The first of the types is the "
     "one that is proposed."},
    {"need-ring", severity::ERROR, "Products need each other.",
     "The program reports it at the end of a run and goes on: one of them is installed before what "
     "it needs. Move what is needed into a product of its own, or, where it is needed only later, "
     "give the part SuppliersElsewhere."},
    {"need-ring-step", severity::NOTE, "A further step of a ring of needs.",
     "The ring is reported where it begins. It can be cut at any of its steps."},
    {"need-ring-possible", severity::WARNING, "Products can be made to need each other.",
     "Another supplier avoids the ring, but this one is offered as well, and the program reports "
     "the ring only at the end of a run. Need a type or version that leaves the product out."},
    {"never-installable", severity::WARNING, "A product that no selection can install.",
     "What it needs is in the distribution, but needs something itself that is not. Look at the "
     "findings of that product."},

    // Suppressions.
    {"allow-malformed", severity::ERROR, "A suppression that cannot be read.",
     "In a description: '# lint: allow ID: REASON' in the lines above an entry. In lint.allow: "
     "'FILE ID: REASON'. The reason must not be empty."},
    {"allow-unknown", severity::ERROR, "A suppression of a check that does not exist.",
     "See the manual page for the identifiers."},
    {"allow-unused", severity::WARNING, "A suppression that suppresses nothing.",
     "What it allowed is gone. Remove it, so that it does not hide the next mistake."},
    {"findings-left-out", severity::ERROR, "A file with too many findings.",
     "Only the first 200 of a file are shown. Mend these and look again."},
});

// Returns the row of a check, or the number of rows where there is none.
constexpr std::size_t row_of(std::string_view id) {
  std::size_t row = 0;
  while (row < CHECKS.size() && CHECKS[row].id != id) ++row;
  return row;
}

constexpr bool is_check(std::string_view id) {
  return row_of(id) < CHECKS.size();
}

// The identifier of a check; a test looks whether each that the sources name is in the table.
class check_id {
 public:
  check_id(const char* id) : row_(row_of(id)) {}

  const report_rule& rule() const { return CHECKS.at(row_); }

 private:
  std::size_t row_;
};

}  // namespace morvane

#endif  // MORVANE_LINT_CHECK_TABLE_H
