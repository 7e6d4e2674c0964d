#include "lint/description_fields.h"

#include <algorithm>
#include <array>

#include "catalogue/description_keywords.h"
#include "catalogue/product.h"

namespace morvane {

namespace {

constexpr std::array<description_field, KEYWORD_COUNT> FIELDS = {{
    {KEYWORD_DESCRIPTION_STATE, value_kind::NUMBER, nesting::PRODUCT},
    {KEYWORD_NAME, value_kind::TEXT, nesting::PRODUCT, name_text::LONGEST},
    {KEYWORD_FULL_NAME, value_kind::TEXT, nesting::PRODUCT, title_text::LONGEST},
    {KEYWORD_VERSION, value_kind::VERSION, nesting::PRODUCT},
    {KEYWORD_PATCH, value_kind::NUMBER, nesting::PRODUCT},
    {KEYWORD_CATEGORY, value_kind::TEXT, nesting::PRODUCT, name_text::LONGEST},
    {KEYWORD_TYPE, value_kind::TEXT, nesting::PRODUCT, name_text::LONGEST},
    {KEYWORD_ABSTRACT, value_kind::LINES, nesting::PRODUCT},
    {KEYWORD_HARDWARE, value_kind::LINES, nesting::PRODUCT},
    {KEYWORD_TARGET, value_kind::OPENING, nesting::PART, title_text::LONGEST},
    {KEYWORD_SUPPLIERS_ELSEWHERE, value_kind::NUMBER, nesting::PART},
    {KEYWORD_ASK, value_kind::LINES, nesting::PART},
    {KEYWORD_ASK_AGAIN, value_kind::LINES, nesting::PART},
    {KEYWORD_TARGET_OWNER, value_kind::TEXT, nesting::PART},
    {KEYWORD_TARGET_GROUP, value_kind::TEXT, nesting::PART},
    {KEYWORD_NEEDS_CATEGORY, value_kind::OPENING, nesting::NEED, name_text::LONGEST},
    {KEYWORD_NEEDS_TEXT, value_kind::TEXT, nesting::NEED, title_text::LONGEST},
    {KEYWORD_NEEDS_TYPE, value_kind::OPENING, nesting::TYPE, name_text::LONGEST},
    {KEYWORD_NEEDS_VERSION, value_kind::VERSION, nesting::TYPE},
    {KEYWORD_NEEDS_PATCH, value_kind::NUMBER, nesting::TYPE},
    {KEYWORD_NEEDS_PATH, value_kind::TEXT, nesting::TYPE, path_text::LONGEST},
    {KEYWORD_NEEDS_FILES, value_kind::LIST, nesting::TYPE, 0, FILES - 1},
    {KEYWORD_REQUIRED_PATCHES, value_kind::LIST, nesting::PRODUCT, 0, PATCHES - 1},
    {KEYWORD_PATH, value_kind::TEXT, nesting::PRODUCT, path_text::LONGEST},
    {KEYWORD_PATH_INFO, value_kind::LINES, nesting::PRODUCT},
    {KEYWORD_PATH_VARIABLE, value_kind::TEXT, nesting::PRODUCT, path_text::LONGEST},
    {KEYWORD_OWNER, value_kind::TEXT, nesting::PRODUCT, name_text::LONGEST},
    {KEYWORD_OWNER_INFO, value_kind::LINES, nesting::PRODUCT},
    {KEYWORD_GROUP, value_kind::TEXT, nesting::PRODUCT, name_text::LONGEST},
    {KEYWORD_GROUP_INFO, value_kind::LINES, nesting::PRODUCT},
    {KEYWORD_ACCESS_INFO, value_kind::LINES, nesting::PRODUCT},
    {KEYWORD_NEEDED_TOOLS, value_kind::LIST, nesting::PRODUCT},
    {KEYWORD_FIXED_OWNERS, value_kind::LIST, nesting::PRODUCT, name_text::LONGEST, FIXED_NAMES},
    {KEYWORD_FIXED_GROUPS, value_kind::LIST, nesting::PRODUCT, name_text::LONGEST, FIXED_NAMES},
}};

}  // namespace

const description_field& field_of(message_number keyword) {
  return *std::ranges::find(FIELDS, keyword, &description_field::keyword);
}

}  // namespace morvane
