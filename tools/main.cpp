// quarrix: a command-line tour of the Quarrix library and a few tools built on it.
#include "Tool.h"

#include <quarrix/framework/Version.h>

#include <cstring>
#include <iostream>

namespace {

using quarrix::tool::Command;

constexpr Command kCommands[] = {
    {"tour", "tour                 show what the library can do, section by section", quarrix::tool::RunTour},
    {"regex", "regex PATTERN TEXT   list the matches and groups of a pattern, or replace them (regex --help)",
     quarrix::tool::RunRegex},
};

void PrintHelp(std::ostream& out) {
  out << "usage: quarrix <command> [arguments]\n"
         "       quarrix --help | --version\n\ncommands:\n";
  for (const Command& c : kCommands) out << "  " << c.synopsis << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    PrintHelp(std::cerr);
    return 2;
  }
  const std::string_view first = argv[1];
  if (first == "--help" || first == "-h" || first == "help") {
    PrintHelp(std::cout);
    return 0;
  }
  if (first == "--version") {
    std::cout << "quarrix " << quarrix::GetQuarrixVersion() << "\n";
    return 0;
  }
  for (const Command& c : kCommands) {
    if (c.name == first) return c.run(std::span<char* const>(argv + 2, static_cast<std::size_t>(argc - 2)), std::cout);
  }
  std::cerr << "quarrix: unknown command '" << first << "' (see quarrix --help)\n";
  return 2;
}
