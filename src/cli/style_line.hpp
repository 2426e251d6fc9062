// The part of the command line about styles and TYP files: doctor, typ.
#pragma once

#include <string>

#include "cli/command_line.hpp"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave itself
class App;
}

namespace ferrowen {

struct StyleArguments {
  DoctorArguments doctor;
  TypArguments typ;
};

// `hint` ends the help of every command.
void add_doctor(CLI::App& app, DoctorArguments& arguments, const std::string& hint);
void add_typ(CLI::App& app, TypArguments& arguments, const std::string& hint);

}  // namespace ferrowen
