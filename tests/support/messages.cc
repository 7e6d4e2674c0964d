#include "support/messages.h"

#include <string>

namespace morvane {

namespace {

struct entry {
  message_number number;
  std::string_view text;
};

constexpr entry INTERPRETED[] = {
    {ANSWER_LETTERS, "ynq"},
    {YES_NO_QUESTION.number, "%s%s %s"},
    {INSTALLED_PRODUCTS_DIRECTORY, "install"},
    {LEFT_FRAME, ""},
    {RIGHT_FRAME, ""},
    {RULER, "------------------------------------------------------------"},
    {ACCESS_QUESTION.number, "<75 %s>"},
    {SITE_RIGHTS_COMMAND, "true"},
    {BUS_1, "busA"},
    {BUS_2, "busB"},
    {BOARD_FAMILY_1_LENGTH, "4"},
    {BOARD_FAMILY_2_LENGTH, "4"},
    {SYSTEM_NOT_SUPPORTED.number, "<117 %s %s %s>\n"},
    {SYSTEM_1_RELEASE_TOO_OLD.number, "<118 %s>\n"},
    {SYSTEM_2_RELEASE_TOO_OLD.number, "<119 %s>\n"},
    {MACHINE_NOT_SUPPORTED.number, "<121 %s>\n"},
    {SITE_HOST_COMMAND, "true"},
    {SITE_HOST_FAILED.number, "<123>\n"},
    {PATH_NOT_WRITABLE.number, "<133 %s>\n"},
    {LINKS_FILE_NAME, "links.conf"},
    {LINKS_DEFAULT_PATH, "/nonexistent/links.conf"},
    {LINKS_COMMAND_1, ""},
    {LINKS_COMMAND_2, ""},
    {LINKS_COMMAND_3, " 2>/dev/null"},
    {CATEGORY_OF_LINKS_TOOL, "LINKS"},
    {CATEGORY_STANDING_IN, "STANDIN"},
    {CATEGORY_WITH_STAND_IN, "STOODFOR"},
    {LINKS_TOOL_TYPE_1, "linksa"},
    {LINKS_TOOL_TYPE_2, "linksb"},
    {LINKS_TOOL_TYPE_3, "linksc"},
    {LINKS_TOOL_TYPE_4, "linksd"},
    {KEYWORD_DESCRIPTION_STATE, "DescriptionState"},
    {KEYWORD_NAME, "Name"},
    {KEYWORD_FULL_NAME, "FullName"},
    {KEYWORD_VERSION, "Version"},
    {KEYWORD_PATCH, "Patch"},
    {KEYWORD_CATEGORY, "Category"},
    {KEYWORD_TYPE, "Type"},
    {KEYWORD_ABSTRACT, "Abstract"},
    {KEYWORD_HARDWARE, "Hardware"},
    {KEYWORD_TARGET, "Target"},
    {KEYWORD_NEEDS_CATEGORY, "NeedsCategory"},
    {KEYWORD_NEEDS_TEXT, "NeedsText"},
    {KEYWORD_NEEDS_TYPE, "NeedsType"},
    {KEYWORD_NEEDS_VERSION, "NeedsVersion"},
    {KEYWORD_NEEDS_PATCH, "NeedsPatch"},
    {KEYWORD_NEEDS_FILES, "NeedsFiles"},
    {KEYWORD_REQUIRED_PATCHES, "RequiredPatches"},
    {KEYWORD_PATH, "Path"},
    {KEYWORD_PATH_VARIABLE, "PathVariable"},
    {KEYWORD_OWNER, "Owner"},
    {KEYWORD_GROUP, "Group"},
    {KEYWORD_FIXED_OWNERS, "FixedOwners"},
    {KEYWORD_FIXED_GROUPS, "FixedGroups"},
    {KEYWORD_ASK, "Ask"},
    {KEYWORD_NEEDS_PATH, "NeedsPath"},
    {KEYWORD_ASK_AGAIN, "AskAgain"},
    {KEYWORD_TARGET_OWNER, "TargetOwner"},
    {KEYWORD_TARGET_GROUP, "TargetGroup"},
    {KEYWORD_SUPPLIERS_ELSEWHERE, "SuppliersElsewhere"},
    {KEYWORD_PATH_INFO, "PathInfo"},
    {KEYWORD_OWNER_INFO, "OwnerInfo"},
    {KEYWORD_GROUP_INFO, "GroupInfo"},
    {KEYWORD_ACCESS_INFO, "AccessInfo"},
    {KEYWORD_NEEDED_TOOLS, "NeededTools"},
};

}  // namespace

void use_test_messages() {
  for (int number = 0; number < MESSAGE_COUNT; ++number) {
    r.store(number, "<" + std::to_string(number) + ">");
  }
  for (const entry& message : INTERPRETED) r.store(message.number, message.text);
  rscok = true;
}

}  // namespace morvane
