// morvane: configures the installation of a software distribution. Takes no arguments.
#include "driver/catalogue_load.h"
#include "driver/installation_run.h"
#include "driver/start_up.h"

int main() {
  static morvane::product_table table;
  morvane::start_up();
  morvane::load_catalogue(table);
  morvane::run_installation(table);
}
