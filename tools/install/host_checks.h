// What the host must have before make can do its work.
#ifndef MORVANE_INSTALL_HOST_CHECKS_H
#define MORVANE_INSTALL_HOST_CHECKS_H

#include <string>
#include <vector>

#include "install/plan.h"

namespace morvane {

// Returns the program that is make here: what the environment calls MAKE, else make.
std::string make_program();

// Returns the tools that make will run for `products`.
std::vector<std::string> needed_tools(const std::vector<product_facts>& products);

// Adds the tools that no directory of PATH has.
void check_tools(const std::vector<std::string>& tools, std::vector<plan_finding>& findings);

// Adds what is wrong with the directory of a product, its owner and its group. Returns whether what
// will lie in the directory can be planned: it is one, or nothing is there yet.
bool check_directory(const product_facts& facts, std::vector<plan_finding>& findings);
void check_owner(const product_facts& facts, std::vector<plan_finding>& findings);

// Adds the files in the current directory that make takes for steps of a product, as done, or for
// their sources; and an identifier that cannot name rules.
void check_rule_files(const product_facts& facts, std::vector<plan_finding>& findings);
void check_identifier(const product_facts& facts, std::vector<plan_finding>& findings);

}  // namespace morvane

#endif  // MORVANE_INSTALL_HOST_CHECKS_H
