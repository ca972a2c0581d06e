// Checks of arguments for the help's eye.
#pragma once

#include <CLI/CLI.hpp>

namespace kvr::cli {

// The check without its limits in the help, where the option's own text says what matters.
inline CLI::Validator quiet(CLI::Validator check) {
  check.description("");
  return check;
}

}  // namespace kvr::cli
