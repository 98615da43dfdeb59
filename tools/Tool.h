#pragma once
// Shared pieces of the quarrix command-line program.
#include <quarrix/framework/CString.h>

#include <ostream>
#include <span>
#include <string_view>

namespace quarrix::tool {

// A subcommand: its arguments exclude the program and the subcommand's name; returns the exit status.
struct Command {
  std::string_view name;
  std::string_view synopsis;  // one line for --help
  int (*run)(std::span<char* const> args, std::ostream& out);
};

int RunTour(std::span<char* const> args, std::ostream& out);
int RunRegex(std::span<char* const> args, std::ostream& out);

// One section of the tour each; they print what the library does with real values.
void TourFramework(std::ostream& out);
void TourArchive(std::ostream& out);
void TourFoundation(std::ostream& out);
void TourRegex(std::ostream& out);

// A heading in the tour's output.
void Heading(std::ostream& out, std::string_view title);

}  // namespace quarrix::tool
