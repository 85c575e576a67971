// kelmo-databuild: turns the object type sources into Kelmo.dat, or dumps a
// Kelmo.dat back into source form.
//
//   kelmo-databuild -o <Kelmo.dat> <source>...
//   kelmo-databuild --dump <Kelmo.dat>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tools/databuild/TypeSources.h"

namespace {

int Usage() {
  std::cerr << "usage: kelmo-databuild -o <Kelmo.dat> <source>...\n"
               "       kelmo-databuild --dump <Kelmo.dat>\n";
  return 2;
}

int Run(const std::vector<std::string>& Arguments) {
  if (Arguments.size() == 2 && Arguments[0] == "--dump") {
    WriteTypeSource(ReadDatFile(Arguments[1]), std::cout);
    return std::cout.flush() ? 0 : 1;
  }
  if (Arguments.size() >= 3 && Arguments[0] == "-o") {
    const std::vector<std::string> Sources(Arguments.begin() + 2, Arguments.end());
    WriteDatFile(ReadTypeSources(Sources), Arguments[1]);
    return 0;
  }
  return Usage();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(std::vector<std::string>(argv + 1, argv + argc));
  } catch (const std::exception& Failure) {
    std::cerr << "kelmo-databuild: " << Failure.what() << "\n";
    return 1;
  }
}
