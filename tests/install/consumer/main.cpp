#include <quarrix/quarrix.h>

#include <iostream>

int main() {
  using namespace quarrix;
  const CString text = cstringf(u"%s %d", u"installed", 42);
  std::cout << text << " " << GetQuarrixVersion() << "\n";
  return text == u"installed 42" ? 0 : 1;
}
