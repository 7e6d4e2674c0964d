// morvane: configures the installation of a software distribution. Takes no arguments.
#include <new>

#include "console/leave.h"
#include "driver/catalogue_load.h"
#include "driver/installation_run.h"
#include "driver/start_up.h"
#include "platform/diagnostic.h"

int main() {
  static morvane::product_table table;
  try {
    morvane::start_up();
    morvane::load_catalogue(table);
    morvane::run_installation(table);
  } catch (const std::bad_alloc&) {
    morvane::diagnose_exhausted_memory();
    morvane::quit();
  }
}
