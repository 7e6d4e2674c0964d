// What a run configures, and where.
#ifndef MORVANE_ANSWERS_PLAN_H
#define MORVANE_ANSWERS_PLAN_H

#include <string>
#include <vector>

#include "catalogue/product.h"

namespace morvane {

struct planned_need {
  std::string category;
  std::string supplier;  // as answer files name it
};

struct planned_part {
  std::string name;
  std::vector<planned_need> needs;
};

struct planned_product {
  std::string id;
  std::string version;
  std::string directory;
  std::string owner;
  std::string group;
  bool other_access = false;
  bool again = false;  // it is installed, and configured again
  std::vector<planned_part> parts;
};

// Returns what the run of `table`, which is at its end, has configured.
std::vector<planned_product> plan_of(const product_table& table);

// Returns the plan for people, a line for each product and part.
std::string plan_text(const std::vector<planned_product>& plan);

}  // namespace morvane

#endif  // MORVANE_ANSWERS_PLAN_H
