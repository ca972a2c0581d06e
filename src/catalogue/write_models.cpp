// write_models FILE          writes the table of all models
// write_models --check FILE  says whether FILE still is that table; exit code 1 when it is not
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "catalogue/models_table.h"

namespace {

int check(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream held;
  held << file.rdbuf();
  if (file && held.str() == kvr::catalogue::modelsTable()) return 0;
  std::cerr << path << " is stale: run write_models " << path << '\n';
  return 1;
}

int write(const std::string& path) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << kvr::catalogue::modelsTable() << std::flush;
  if (file) return 0;
  std::cerr << path << ": cannot be written\n";
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string first = argc > 1 ? argv[1] : "";
  if (argc == 3 && first == "--check") return check(argv[2]);
  if (argc == 2 && !first.starts_with('-')) return write(first);
  std::cerr << "usage: write_models [--check] FILE\n";
  return 2;
}
