#include "Tool.h"

#include <iostream>

namespace quarrix::tool {

void Heading(std::ostream& out, std::string_view title) {
  out << "\n== " << title << " " << std::string(title.size() < 70 ? 70 - title.size() : 0, '=') << "\n";
}

int RunTour(std::span<char* const> args, std::ostream& out) {
  if (!args.empty()) {
    std::cerr << "quarrix tour: takes no arguments\n";
    return 2;
  }
  out << "A tour of Quarrix: what each part of the library does, on real values.\n";
  TourFramework(out);
  TourArchive(out);
  TourRegex(out);
  TourFoundation(out);
  return 0;
}

}  // namespace quarrix::tool
