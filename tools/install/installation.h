// Doing what was planned, product by product.
#ifndef MORVANE_INSTALL_INSTALLATION_H
#define MORVANE_INSTALL_INSTALLATION_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "install/plan.h"

namespace morvane {

struct installation_options {
  std::size_t jobs = 1;
  std::string kept = {};      // the directory for copies of what is replaced; empty: none are made
  std::string registry = {};  // of receipts
};

enum class product_outcome {
  NOT_BEGUN,
  INSTALLED,
  UNRECORDED,  // installed, without a receipt
  FAILED,
  INTERRUPTED,  // half-way
};

struct product_result {
  product_outcome outcome = product_outcome::NOT_BEGUN;
  std::string output;  // of make and of what failed; of an installed product what is to be said
};

struct installation_result {
  std::vector<product_result> products;  // as planned
  int signal = 0;                        // that ended it early

  bool is_complete() const;
};

// Is told of each product that begins, and that has ended.
struct installation_listener {
  std::function<void(std::size_t product)> begins;
  std::function<void(std::size_t product, const product_result& result)> ended;
};

// Installs the products of `plan` in its order, as many at a time as may be and as do not touch
// each other. After one fails, none is begun. INT, TERM and HUP end what runs and begin no other.
installation_result install_products(const install_plan& plan, const installation_options& options,
                                     const installation_listener& listener);

}  // namespace morvane

#endif  // MORVANE_INSTALL_INSTALLATION_H
