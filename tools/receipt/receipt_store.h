// Where receipts are kept: beside each product, at DIRECTORY/install/ID.receipt, and once more in
// the registry of the host, which tells what is installed on it.
#ifndef MORVANE_RECEIPT_RECEIPT_STORE_H
#define MORVANE_RECEIPT_RECEIPT_STORE_H

#include <string>
#include <string_view>
#include <vector>

#include "receipt/receipt.h"

namespace morvane {

inline constexpr std::string_view REGISTRY = "/var/lib/morvane";
inline constexpr std::string_view RECEIPT_ENDING = ".receipt";

// The directory of a product in which its receipt lies.
inline constexpr std::string_view INSTALL_DIRECTORY = "install";

struct stored_receipt {
  receipt content;
  std::string file;         // that it was read from; empty where the product has none
  bool trusted = false;     // nobody but the superuser and who runs the command can have written it
  bool registered = false;  // it lies in the registry
  bool beside = false;      // it lies beside the product
};

struct receipt_store {
  std::vector<stored_receipt> receipts;  // each product in its directory once
  std::vector<std::string> faults;       // of files that cannot be taken: "FILE: WHY"
  bool complete = true;                  // all was read that the one who runs the command may read
};

// Notes that something could not be read, as `errno` tells. What an ordinary user may not read is
// nothing that is missing.
void note_unread(receipt_store& store, const std::string& file);

// Adds the receipts of the registry, which need not be there. Returns false, with `errno` telling
// why, where it cannot be read; errno is EPERM where others than the superuser and who runs the
// command can write it.
bool add_registered(receipt_store& store, const std::string& registry);

// Adds the receipts beside the products in `directory`. Of two that tell of the same product, one
// that is trusted counts, and else the later one. Returns false, with `errno` telling why, where
// the directory cannot be read.
bool add_beside(receipt_store& store, const std::string& directory);

// Write the receipt to one place, which is made where it is missing. Where PATH/install is made,
// the receipt gets an entry for it. Return 0, or the errno that tells why not.
int keep_beside(receipt& kept);
int keep_registered(const receipt& kept, const std::string& registry);

// Returns the receipt of a product in its directory, or null; also where there is only one that
// another user can have written.
const stored_receipt* find_trusted(const receipt_store& store, std::string_view id,
                                   std::string_view directory);

// What became of a receipt that was to be kept.
struct receipt_places {
  int beside = 0;    // 0, or the errno that tells why not
  int registry = 0;  // the same
};

// Writes the receipt to both. An ordinary user may not write the registry.
receipt_places keep_receipt(receipt& kept, const std::string& registry);

// Remove it from one place. Return 0, also where it is not there, or the errno that tells why not.
int drop_beside(const receipt& dropped);
int drop_registered(const receipt& dropped, const std::string& registry);

}  // namespace morvane

#endif  // MORVANE_RECEIPT_RECEIPT_STORE_H
