// A file that is opened first, while its content is still to be composed, and written at once.
#ifndef MORVANE_PLATFORM_OUTPUT_FILE_H
#define MORVANE_PLATFORM_OUTPUT_FILE_H

#include <string>
#include <string_view>

#include "platform/file.h"

namespace morvane {

// What becomes of a file that lies there already where no new one comes about.
enum class earlier_file { STAYS, GOES };

class output_file {
 public:
  // Opens the file `name` in the current directory, or creates it; an existing one keeps its mode
  // and owner, and its content as long as nothing is written.
  output_file(std::string_view name, earlier_file earlier);

  // Removes a file that was created and never written, and, where an earlier file is to go, any
  // that was not written in full. Leaves alone what could not be opened.
  ~output_file();
  output_file(const output_file&) = delete;
  output_file& operator=(const output_file&) = delete;

  bool is_open() const { return file_.is_open(); }

  // Makes `content` the content of the file and closes it; no signal ends the program half-way.
  // Returns whether all of it was written. Called once, for an open file.
  bool write(std::string_view content);

 private:
  std::string name_;
  earlier_file earlier_;
  descriptor file_;
  bool unwanted_ = false;  // goes with the object
};

}  // namespace morvane

#endif  // MORVANE_PLATFORM_OUTPUT_FILE_H
