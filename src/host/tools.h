// The tools that the generated makefile runs.
#ifndef MORVANE_HOST_TOOLS_H
#define MORVANE_HOST_TOOLS_H

#include <array>
#include <string_view>

#include "catalogue/product.h"

namespace morvane {

// The tools that every installation needs.
inline constexpr std::array<std::string_view, 9> INST_TOOLS = {
    "tar", "diff", "chmod", "chgrp", "chown", "mkdir", "cat", "find", "cut"};

// Tells whether an executable `tool` lies in an absolute directory of PATH; standard error says so
// where none does.
bool check_tool_avail(std::string_view tool);

// Searches the standard tools and those that the selected products of `table` need. Where one is
// missing the operator may quit, go on without it, or give up a product, which unselects it.
void check_tools_needed(product_table& table);

}  // namespace morvane

#endif  // MORVANE_HOST_TOOLS_H
